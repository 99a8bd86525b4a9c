#include "picture/PngWriter.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <csetjmp>
#include <vector>

#include "picture/AtomicFile.h"
#include "picture/HalfFloat.h"
#include "picture/WrittenFile.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

constexpr int kBits = 8;

// 0 for NaN, else the value clamped to [0, 1].
float clamped(float value) {
  return value > 0.0F ? std::min(value, 1.0F) : 0.0F;
}

std::uint8_t linearCode(float value) {
  return static_cast<std::uint8_t>(std::lround(clamped(value) * 255.0F));
}

float sampleAt(const Samples& samples, std::size_t index) {
  if (const auto* floats = std::get_if<FloatSamples>(&samples)) return (**floats)[index];
  if (const auto* uints = std::get_if<UintSamples>(&samples)) {
    return static_cast<float>((**uints)[index]);
  }
  return floatFromHalf((*std::get<HalfSamples>(samples))[index]);
}

const OutputChannel* channelOf(const OutputPicture& picture, const char* hostName) {
  for (const OutputChannel& channel : picture.channels) {
    if (channel.hostName == hostName) return &channel;
  }
  return nullptr;
}

// Interleaved codes of the whole box, the top row first.
std::vector<std::uint8_t> codesOf(const OutputPicture& picture, std::size_t components) {
  constexpr std::array<const char*, 4> kNames = {"rgba.red", "rgba.green", "rgba.blue",
                                                 "rgba.alpha"};
  const std::size_t width = picture.box.width();
  const std::size_t height = picture.box.height();
  std::vector<std::uint8_t> codes(width * height * components);
  for (std::size_t c = 0; c < components; ++c) {
    const OutputChannel* channel = channelOf(picture, kNames[c]);
    if (channel == nullptr) continue;
    for (std::size_t pixel = 0; pixel < width * height; ++pixel) {
      const std::size_t row = height - 1 - pixel / width;
      const float value = sampleAt(channel->samples, row * width + pixel % width);
      codes[pixel * components + c] = c == 3 ? linearCode(value) : srgbCode(value);
    }
  }
  return codes;
}

// libpng unwinds by longjmp, so what its callbacks throw is kept here instead.
struct Sink {
  AtomicFile* file;
  std::string failure;
};

void writeBytes(png_structp png, png_bytep bytes, png_size_t count) {
  auto* sink = static_cast<Sink*>(png_get_io_ptr(png));
  bool written = true;
  try {
    sink->file->write(bytes, count);
  } catch (const ToolError& error) {
    sink->failure = error.what();
    written = false;
  }
  if (!written) png_error(png, "write");
}

void flushBytes(png_structp) {}
void quiet(png_structp, png_const_charp) {}

[[noreturn]] void jump(png_structp png, png_const_charp) {
  png_longjmp(png, 1);
}

// False if libpng gave up; only trivial objects live across the jump.
bool encode(png_structp png, png_infop info, const std::uint8_t* codes, png_uint_32 width,
            png_uint_32 height, bool alpha) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;  // NOLINT: libpng's way of reporting
  png_set_IHDR(png, info, width, height, kBits, alpha ? PNG_COLOR_TYPE_RGBA : PNG_COLOR_TYPE_RGB,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_sRGB(png, info, PNG_sRGB_INTENT_PERCEPTUAL);
  png_write_info(png, info);
  const std::size_t stride = static_cast<std::size_t>(width) * (alpha ? 4 : 3);
  for (png_uint_32 row = 0; row < height; ++row)
    png_write_row(png, codes + row * stride);
  png_write_end(png, nullptr);
  return true;
}

bool encodeTo(Sink& sink, const OutputPicture& picture, bool alpha) {
  const std::vector<std::uint8_t> codes = codesOf(picture, alpha ? 4 : 3);
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, jump, quiet);
  png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
  bool done = false;
  if (info != nullptr) {
    png_set_write_fn(png, &sink, writeBytes, flushBytes);
    done = encode(png, info, codes.data(), static_cast<png_uint_32>(picture.box.width()),
                  static_cast<png_uint_32>(picture.box.height()), alpha);
  }
  png_destroy_write_struct(&png, &info);
  return done;
}

}  // namespace

std::uint8_t srgbCode(float linear) {
  const float v = clamped(linear);
  const float encoded = v <= 0.0031308F ? 12.92F * v : 1.055F * std::pow(v, 1.0F / 2.4F) - 0.055F;
  return static_cast<std::uint8_t>(std::lround(encoded * 255.0F));
}

void writePng(const OutputPicture& picture, const std::string& path) {
  AtomicFile place(path);
  Sink sink{&place, {}};
  if (!encodeTo(sink, picture, channelOf(picture, "rgba.alpha") != nullptr)) {
    throw ToolError(ExitCode::OutputNotWritten, sink.failure.empty()
                                                    ? oneLine(path) + ": cannot be written as PNG"
                                                    : sink.failure);
  }
  place.commit(faultOfWrittenPng);
}

}  // namespace drevintool
