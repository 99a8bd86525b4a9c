#pragma once

/// A node of the embedded host: one operator with its controls, inputs and messages.
///
/// The documented interface only knows `Node` as an opaque pointer that an operator's constructor
/// receives; everything public here is for the program that plays the host.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "DDImage/Knob.h"
#include "DDImage/Op.h"

namespace embedded {

enum class Severity { Warning, Error };

/// A text that an operator gave to Op::error or Op::warning, unchanged.
struct Message {
  Severity severity;
  std::string text;
};

/// What to do with the stages and the fractions of a stage that an operator announces. Called on
/// the thread on which it does so.
struct ProgressListener {
  std::function<void(const std::string&)> stage;
  std::function<void(double)> fraction;
};

}  // namespace embedded

class DD_EXPORT Node {
 public:
  /// Builds the operator and makes its controls (the make pass).
  explicit Node(const DD::Image::Op::Description& description);
  ~Node();
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  const DD::Image::Op::Description& description() const;
  DD::Image::Op& op() const;

  // Inputs -------------------------------------------------------------------------------------

  /// Connects `op` (null disconnects): asks test_input, calls set_input, then knob_changed with
  /// Knob::inputChange. Returns false, and changes nothing, if the operator refuses the input,
  /// if it has no input of that number, or if `op` reads this node itself.
  /// `op` is not owned and must outlive the node.
  bool connect(int input, DD::Image::Op* op);

  // Controls -----------------------------------------------------------------------------------

  /// All controls in order, tabs and texts included.
  const std::vector<std::unique_ptr<DD::Image::Knob>>& knobs() const;
  /// The control of that script name, or null.
  DD::Image::Knob* knob(const std::string& name) const;
  /// Sets a control as an artist's hand would, then calls the operator's knob_changed for it.
  void setByHand(DD::Image::Knob& knob, const std::vector<double>& values);
  /// As above from a text: what Knob::set_text understands. Returns false, and changes nothing, if
  /// the text is not a value of that control.
  bool setByHand(DD::Image::Knob& knob, const std::string& text);
  /// Tells the operator that its panel was opened (knob_changed with Knob::showPanel).
  void showPanel();
  /// The store pass: writes every control's value into the operator's members, which must then be
  /// validated anew. Throws std::logic_error if the operator declares other controls than it made.
  void storeKnobs();

  // Messages -----------------------------------------------------------------------------------

  /// In order; a text that came more than once is kept once.
  std::vector<embedded::Message> messages() const;
  bool hasError() const;
  void clearMessages();
  void addMessage(embedded::Severity severity, std::string text);

  // For the host's own library -------------------------------------------------------------------

  DD::Image::Knob* addKnob(std::unique_ptr<DD::Image::Knob> knob);
  /// Told of the operator's progress, until it is replaced.
  void onProgress(embedded::ProgressListener listener);
  void announceStage(const std::string& name);
  void announceFraction(double fraction);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
