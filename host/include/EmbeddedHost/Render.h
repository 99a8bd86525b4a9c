#pragma once

/// Rendering a node: the host's sequence store, append, validate, request, open, rows, close.

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "DDImage/Box.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/Row.h"
#include "EmbeddedHost/ImageInput.h"
#include "EmbeddedHost/Node.h"

namespace embedded {

/// What a node asked of one of its inputs: the union of its requests, after clipping to what the
/// input has.
struct InputRequest {
  DD::Image::Box box;
  DD::Image::ChannelSet channels;
};

/// A stage of a render: what the operator announced with progressMessage, or "Rows".
struct Stage {
  std::string name;
  double seconds = 0.0;
};

struct Progress {
  std::string stage;  ///< name of the current stage
  int rowsDone = 0;
  int rowsTotal = 0;      ///< 0 until the rows begin
  double fraction = 0.0;  ///< of the stage, from 0 to 1, where the operator tells it
};

struct RenderOptions {
  /// Columns and rows wanted; the operator's box when absent. Clipped to the operator's box.
  std::optional<DD::Image::Box> region;
  /// Channels wanted.
  DD::Image::ChannelSet channels;
  /// Row threads; 0 means Thread::numCPUs.
  unsigned threads = 0;
  /// Proxy scale of the output and interface contexts (1 is full resolution).
  float proxyScale = 1.0F;
  /// Called on the rendering thread at each new stage, and about ten times a second within stages
  /// that tell a fraction and during rows.
  std::function<void(const Progress&)> progress;
};

/// One validated, requested and opened node, with all that it reads. Rows may be asked for from any
/// thread, in any order, more than once. Closes when destroyed. After an error or an abort no row
/// is rendered, nor after a later session on the same node has begun: that ends this one. Whatever
/// an operator or the progress callback throws becomes an error message of the node.
class DD_EXPORT RenderSession {
 public:
  /// Runs store, append, validate(false), validate(true), request and open. Nodes that this one
  /// reads are stored and validated too. With nothing to render (an empty box or no channels) it
  /// neither requests nor opens.
  RenderSession(Node& node, const RenderOptions& options);
  ~RenderSession();
  RenderSession(const RenderSession&) = delete;
  RenderSession& operator=(const RenderSession&) = delete;

  /// True if neither an error nor an abort has happened, and no later session has begun.
  bool ok() const;
  /// True if the node, or an operator that it reads, is in error.
  bool failed() const;
  /// The messages of the operators that are read, then those of the node.
  std::vector<Message> messages() const;
  /// The box that rows are wanted for: the operator's box, clipped to the region.
  const DD::Image::Box& box() const;
  const DD::Image::IopInfo& info() const;
  /// The operator's hash after the store pass.
  const DD::Image::Hash& hash() const;
  const std::map<int, InputRequest>& requests() const;
  std::vector<Stage> stages() const;
  /// Begins a stage of the caller's own; the operator announces those of the opening.
  void beginStage(const std::string& name);
  /// Renders columns [x, r) of row y into `row`; false after an error or an abort. Outside the
  /// operator's box the edge repeats; channels that it lacks read 0.
  bool row(int y, int x, int r, const DD::Image::ChannelSet& channels, DD::Image::Row& row);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

enum class RenderStatus { Done, Error, Aborted };

struct RenderResult {
  RenderStatus status = RenderStatus::Error;
  Image image;                           ///< box and planes of what was rendered
  std::map<int, InputRequest> requests;  ///< by input number
  std::vector<Stage> stages;
  std::vector<Message> messages;
  std::string hash;  ///< 16 hexadecimal digits
  unsigned threads = 0;
};

/// Renders the whole wanted box on all row threads. The image has those of the wanted channels that
/// the operator has. Error and Aborted leave it empty.
DD_EXPORT RenderResult render(Node& node, const RenderOptions& options);

/// Asks every running render to stop soon; safe to call from a signal handler.
DD_EXPORT void requestAbort() noexcept;
DD_EXPORT bool abortRequested() noexcept;
DD_EXPORT void clearAbort() noexcept;

/// Processors that this process may use: affinity mask and cgroup CPU quota, at least 1.
DD_EXPORT unsigned usableProcessors();
/// Sets Thread::numCPUs, by which renders and operators choose their threads (0:
/// usableProcessors()).
DD_EXPORT void setThreadCount(unsigned threads);
/// How often Thread::spawn has been called since the program began.
DD_EXPORT std::uint64_t spawnCalls() noexcept;

}  // namespace embedded
