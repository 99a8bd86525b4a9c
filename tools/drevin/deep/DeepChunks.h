#pragma once

/// The blocks of a deep part: what their own headers say, read before any sample is.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "picture/ExrHeaderScan.h"

namespace drevintool {

/// Samples of the pixels of each block: of each row of a scanline part from the top, of each tile
/// of the first level of a tiled part by rows of tiles from the top.
///
/// Reads the part's table of blocks and the head of each of them. Throws ToolError
/// (InputUnreadable) with one line that names the file and the block if one is missing, lies
/// outside the file, stands for another place than the table says, or announces more than its
/// compression can bring into its bytes. The part's sizes must have passed checkExrLimits.
std::vector<std::uint64_t> scanDeepChunks(const std::string& path, const ExrFacts& facts,
                                          std::size_t part);

}  // namespace drevintool
