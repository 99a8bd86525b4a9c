#pragma once

/// Paths that stand for one file of each frame and view.

#include <string>
#include <vector>

namespace drevintool {

/// A path with places for the frame number and the view:
///
/// * `#`, `##`, `####`... and `@`, `@@`...: the frame with at least as many digits as signs; a
///   single sign does not pad;
/// * `%d`, and `%04d` with any width from 1 to 16: as printf writes it;
/// * `%V`: the view's name; `%v`: its first letter.
///
/// The sign of a negative frame counts as a digit: -5 is "-005" for `####`. A backslash before `#`,
/// `@` or `%` makes it a plain sign. Everything else stands for itself.
class FramePattern {
 public:
  explicit FramePattern(const std::string& path);

  bool hasFrame() const;
  bool hasView() const;
  /// The path of that frame and view; a `view` that is empty leaves its place empty.
  std::string path(int frame, const std::string& view = "") const;

 private:
  enum class Kind { Text, Frame, View, ViewLetter };
  struct Piece {
    Kind kind;
    std::string text;  ///< of Text
    int digits = 0;    ///< of Frame, at least
  };

  void addText(const std::string& text);
  bool has(Kind kind) const;
  static std::string filled(const Piece& piece, int frame, const std::string& view);
  std::size_t addSigns(const std::string& path, std::size_t at);
  std::size_t addPercent(const std::string& path, std::size_t at);

  std::vector<Piece> pieces_;
};

/// Throws ToolError (Usage) if the path has a place for a view, where there are no views. `start`
/// is what the message begins with.
void refuseView(const std::string& path, const std::string& start);

/// The one file that a path names where there is no sequence, backslashes before signs taken away.
/// Throws ToolError (Usage) if it has a place for a frame or a view; `remedy` is what there is to
/// do about frames.
std::string onlyFile(const std::string& path, const std::string& start, const std::string& remedy);

/// The path that names `file` itself, with a backslash before each `#`, `@` and `%`.
std::string patternOfFile(const std::string& file);

/// The first place for a frame in the path as other programs write it, and that FramePattern takes
/// for text: `%4d`, `%04i`, `$F4`. Empty if there is none.
std::string foreignFramePlace(const std::string& path);

}  // namespace drevintool
