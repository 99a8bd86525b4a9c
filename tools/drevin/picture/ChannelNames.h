#pragma once

/// Names of channels: as a picture file spells them, and as the host's channel pickers do.

#include <set>
#include <string>
#include <vector>

#include "picture/Picture.h"

namespace drevintool {

/// The host's name of a file's channel. R, G, B, A (also red, Red, RED ...; also in a layer named
/// rgba) are rgba.red ... rgba.alpha; Z is depth.Z; `layer.channel` stays as it is; any other name
/// without a layer goes into the layer "other".
std::string hostChannelName(const std::string& fileName);

/// The same for a channel of a deep image: Z is deep.front and ZBack deep.back.
std::string hostDeepChannelName(const std::string& fileName);

struct ChannelNaming {
  std::string fileName;
  std::string hostName;
};

/// The names of a file's channels, of which no two may be alike, in the order of its parts.
class TakenNames {
 public:
  /// A channel's own name where neither that nor the host's is taken yet; else with its part's
  /// before it, or with a number behind it.
  ChannelNaming add(const std::string& name, const std::string& part);

 private:
  bool isFree(const std::string& name) const;
  std::string freeName(const std::string& name, const std::string& part) const;

  std::set<std::string> taken_;
};

/// Whether the name is one of rgba.red, rgba.green, rgba.blue, rgba.alpha.
bool isRgba(const std::string& hostName);
/// Whether the name is one of rgba.red, rgba.green, rgba.blue.
bool isRgb(const std::string& hostName);

/// The channel that the user's `name` means: a host's name, else a file's name, else a shorthand
/// (R, red, Z). Null if the picture has no such channel.
const PictureChannel* findChannel(const Picture& picture, const std::string& name);

/// "R, G, B, A, Z": the channels of a picture by their file names, for messages. Control
/// characters come out as '?'; very long lists end in "... (N channels)".
std::string channelList(const Picture& picture);

/// What a message about a channel that the picture lacks ends with: "; did you mean Z? It has A,
/// Z". The file's names and the host's are both thought of.
std::string channelHint(const Picture& picture, const std::string& name);

/// The pieces of a comma list, blanks around them dropped; an empty text has none.
std::vector<std::string> splitList(const std::string& text);

}  // namespace drevintool
