#include "sequence/FrameChunk.h"

#include <gtest/gtest.h>

#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using Frames = std::vector<int>;

std::string failureOf(const std::string& text, const Frames& frames) {
  try {
    FrameChunk::parse(text).of(frames);
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::Usage);
    return error.what();
  }
  ADD_FAILURE() << "no failure: " << text;
  return {};
}

TEST(FrameChunk, framesOfAChunk_followOneAnother) {
  const Frames frames{1, 3, 5, 120, 119, 118};
  EXPECT_EQ(FrameChunk::parse("1/3").of(frames), (Frames{1, 3}));
  EXPECT_EQ(FrameChunk::parse("2/3").of(frames), (Frames{5, 120}));
  EXPECT_EQ(FrameChunk::parse("3/3").of(frames), (Frames{119, 118}));
}

TEST(FrameChunk, oneChunk_isAll) {
  EXPECT_EQ(FrameChunk::parse("1/1").of({7, 8, 9}), (Frames{7, 8, 9}));
}

TEST(FrameChunk, asManyChunksAsFrames_haveOneEach) {
  EXPECT_EQ(FrameChunk::parse("2/3").of({7, 8, 9}), Frames{8});
}

TEST(FrameChunk, chunks_coverTheListOnceAndAreNearlyEqual) {
  for (int total = 1; total <= 40; ++total) {
    Frames frames;
    for (int frame = 0; frame < total; ++frame)
      frames.push_back(100 - 3 * frame);
    for (int count = 1; count <= total; ++count) {
      Frames together;
      for (int number = 1; number <= count; ++number) {
        const Frames chunk = FrameChunk{number, count}.of(frames);
        EXPECT_GE(static_cast<int>(chunk.size()), total / count);
        EXPECT_LE(static_cast<int>(chunk.size()), (total + count - 1) / count);
        together.insert(together.end(), chunk.begin(), chunk.end());
      }
      EXPECT_EQ(together, frames) << total << " frames in " << count;
    }
  }
}

TEST(FrameChunk, moreChunksThanFrames_areRefused) {
  EXPECT_EQ(failureOf("1/4", {1, 2, 3}),
            "--chunk 1/4: --frames has only 3; make at most as many chunks");
}

TEST(FrameChunk, chunksThatAreNotThere_areRefused) {
  for (const char* text : {"0/3", "4/3", "-1/3", "1/0", "1/-1"})
    EXPECT_NE(failureOf(text, {1, 2, 3}).find("there is no such chunk"), std::string::npos) << text;
}

TEST(FrameChunk, chunkBehindTheLast_namesTheLast) {
  EXPECT_EQ(failureOf("4/3", {1, 2, 3}),
            "--chunk 4/3: there is no such chunk; the first is 1, the last 3");
}

TEST(FrameChunk, otherTexts_areRefused) {
  for (const char* text :
       {"", "1", "/", "1/", "/3", "1/3/5", "a/b", "1 / 3", "1.5/3", "99999999999/3"})
    EXPECT_NE(failureOf(text, {1, 2, 3}).find("such as 3/10"), std::string::npos) << text;
}

}  // namespace
}  // namespace drevintool
