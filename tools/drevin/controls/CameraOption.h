#pragma once

/// The camera that the command line names: values in a text, a file of them, or a picture's header.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/CameraInput.h"
#include "EmbeddedHost/Node.h"
#include "controls/CameraKeys.h"
#include "controls/ControlCurve.h"
#include "controls/HeaderCamera.h"
#include "picture/Picture.h"

namespace drevintool {

/// A camera at one frame: every value, and where it is from.
struct FoundCamera {
  embedded::CameraValues values;
  std::map<std::string, CameraFinding> findings;  ///< by the names of cameraKeys, all of them
};

class CameraOption {
 public:
  /// Takes "focalLength=50,fStop=1.4,..." (see cameraKeys for the keys and their units), the name
  /// of a JSON file (see readCameraFile), or "header", also with values behind it for what a header
  /// lacks: "header,focalPlane=2.7". Throws ToolError: Usage for an unknown key (naming the
  /// nearest), a key given twice, or a value that is not a number or not above 0, in the file too;
  /// what readCameraFile throws.
  explicit CameraOption(const std::string& text);

  /// Whether such a text names a file: one that ends in .json, or that has a point or a slash and
  /// no
  /// '='.
  static bool namesFile(const std::string& text);

  /// Whether its values are those of a picture's header.
  bool isHeader() const { return header_; }

  /// Throws ToolError (Usage) if isHeader(), for a subcommand that reads no picture, or was given
  /// none.
  void refuseHeader(const std::string& subcommand) const;

  /// The camera at a frame. Values that are left out are the node's controls as they stand. Throws
  /// ToolError: Usage if values change over frames and there is no frame; InputUnreadable, with
  /// what was found, if the header of `picture` lacks the focal length, the f-number, the focus
  /// distance or the film back's width, and none is given. `picture` may be null unless isHeader().
  FoundCamera at(std::optional<double> frame, const Node& node, const Picture* picture) const;

  /// From now on its focus distance is that one, in scene units, which came from `from`.
  void setFocus(double distance, const std::string& from) { focus_ = {distance, from}; }

  /// What is given, by key.
  const std::map<std::string, ControlCurve>& curves() const { return curves_; }

 private:
  [[noreturn]] void fail(const std::string& reason) const;
  void takeTexts(const std::string& list);
  void checkAboveZero() const;
  void checkEnough(const std::map<std::string, CameraFinding>& findings,
                   const Picture& picture) const;

  std::string text_;
  bool header_ = false;
  std::map<std::string, ControlCurve> curves_;
  std::optional<CameraFinding> focus_;  // wins over all others
};

/// "focalLength 35 mm (cameraFocalLength), fStop 8 (cameraFNumber), ...".
std::string cameraLine(const std::map<std::string, CameraFinding>& findings);

/// What the picture's header says of its camera, as far as it does, by the names of cameraKeys; the
/// node's controls worldScale and worldScaleMultiplier turn metres into scene units. Without a node
/// they are taken as they are made.
std::map<std::string, CameraFinding> cameraOfHeader(const Node* node, const Picture& picture);

/// The horizontal field of view of the picture's header, see findFieldOfView.
std::optional<CameraFinding> fieldOfViewOf(const Picture& picture);

/// The keys whose values `--camera header` needs, and that neither were found nor follow from what
/// was; in the order of cameraKeys.
std::vector<std::string> missingCameraKeys(const std::map<std::string, CameraFinding>& findings,
                                           const Picture& picture);

/// Gives the node's own lens controls the values, with a film format of the artist's own.
void setLensControls(Node& node, const embedded::CameraValues& values);

/// Puts the camera on the node's Camera input. Throws ToolError (RenderFailed) if it is refused.
void connectCamera(Node& node, embedded::CameraInput& camera);

}  // namespace drevintool
