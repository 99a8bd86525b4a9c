#include "sequence/FramePattern.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <optional>

#include "terminal/ExitCode.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

constexpr int kMostDigits = 16;
constexpr const char* kOrName = "(or put a backslash before #, @ or % where it is part of a name)";

bool isSpecial(char c) {
  return c == '#' || c == '@' || c == '%';
}

bool isDigit(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

// The digits of "%04d" and "%d" at `at`, with the length of the whole; nothing if it is no such.
struct Percent {
  int digits;
  std::size_t length;
};

std::optional<Percent> percentAt(const std::string& path, std::size_t at) {
  std::size_t end = at + 1;
  while (end < path.size() && isDigit(path[end]))
    ++end;
  if (end >= path.size() || path[end] != 'd') return std::nullopt;
  if (end == at + 1) return Percent{1, 2};
  const std::string width = path.substr(at + 1, end - at - 1);
  const std::optional<int> digits = parseInteger(width);
  if (width.front() != '0' || !digits || *digits < 1 || *digits > kMostDigits) return std::nullopt;
  return Percent{*digits, end - at + 1};
}

// The length of "%4d", "%04i" or "$F4" at the beginning; 0 if it is no such.
std::size_t foreignLength(const std::string& text) {
  const bool dollar = text.rfind("$F", 0) == 0;
  if (!dollar && text.front() != '%') return 0;
  std::size_t end = dollar ? 2 : 1;
  while (end < text.size() && isDigit(text[end]))
    ++end;
  const char next = end < text.size() ? text[end] : '\0';
  if (!dollar) return (next == 'd' || next == 'i') && !percentAt(text, 0) ? end + 1 : 0;
  const bool longer = next == '_' || std::isalpha(static_cast<unsigned char>(next)) != 0;
  return longer ? 0 : end;
}

}  // namespace

void refuseView(const std::string& path, const std::string& start) {
  if (!FramePattern(path).hasView()) return;
  throw ToolError(
      ExitCode::Usage,
      oneLine(start + path + ": has a place for a view; write the view's name " + kOrName));
}

std::string onlyFile(const std::string& path, const std::string& start, const std::string& remedy) {
  const FramePattern pattern(path);
  if (pattern.hasFrame()) {
    throw ToolError(
        ExitCode::Usage,
        oneLine(start + path + ": stands for the files of a sequence; " + remedy + " " + kOrName));
  }
  refuseView(path, start);
  return pattern.path(0);
}

std::string patternOfFile(const std::string& file) {
  std::string path;
  for (const char c : file) {
    if (isSpecial(c)) path += '\\';
    path += c;
  }
  return path;
}

std::string foreignFramePlace(const std::string& path) {
  for (std::size_t at = 0; at < path.size(); ++at) {
    if (path[at] == '\\') {
      ++at;
    } else if (const std::size_t length = foreignLength(path.substr(at)); length > 0) {
      return path.substr(at, length);
    }
  }
  return {};
}

FramePattern::FramePattern(const std::string& path) {
  for (std::size_t at = 0; at < path.size();) {
    const char c = path[at];
    if (c == '\\' && at + 1 < path.size() && isSpecial(path[at + 1])) {
      addText(path.substr(at + 1, 1));
      at += 2;
    } else if (c == '#' || c == '@') {
      at += addSigns(path, at);
    } else if (c == '%') {
      at += addPercent(path, at);
    } else {
      addText(path.substr(at, 1));
      ++at;
    }
  }
}

void FramePattern::addText(const std::string& text) {
  if (pieces_.empty() || pieces_.back().kind != Kind::Text) pieces_.push_back({Kind::Text, {}, 0});
  pieces_.back().text += text;
}

std::size_t FramePattern::addSigns(const std::string& path, std::size_t at) {
  const std::size_t end = std::min(path.find_first_not_of(path[at], at), path.size());
  pieces_.push_back({Kind::Frame, {}, static_cast<int>(std::min<std::size_t>(end - at, 255))});
  return end - at;
}

std::size_t FramePattern::addPercent(const std::string& path, std::size_t at) {
  const char next = at + 1 < path.size() ? path[at + 1] : '\0';
  if (next == 'V' || next == 'v') {
    pieces_.push_back({next == 'V' ? Kind::View : Kind::ViewLetter, {}, 0});
    return 2;
  }
  if (const std::optional<Percent> percent = percentAt(path, at)) {
    pieces_.push_back({Kind::Frame, {}, percent->digits});
    return percent->length;
  }
  addText("%");
  return 1;
}

bool FramePattern::has(Kind kind) const {
  const auto isSuch = [&](const Piece& piece) { return piece.kind == kind; };
  return std::any_of(pieces_.begin(), pieces_.end(), isSuch);
}

bool FramePattern::hasFrame() const {
  return has(Kind::Frame);
}

bool FramePattern::hasView() const {
  return has(Kind::View) || has(Kind::ViewLetter);
}

std::string FramePattern::filled(const Piece& piece, int frame, const std::string& view) {
  if (piece.kind == Kind::View) return view;
  if (piece.kind == Kind::ViewLetter) return view.substr(0, 1);
  return piece.kind == Kind::Text ? piece.text : fmt::format("{:0{}}", frame, piece.digits);
}

std::string FramePattern::path(int frame, const std::string& view) const {
  std::string path;
  for (const Piece& piece : pieces_)
    path += filled(piece, frame, view);
  return path;
}

}  // namespace drevintool
