#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "host/HostBench.h"

using embedded::RenderResult;
using embedded::RenderStatus;
using embedded::Severity;
using smooth::HostBench;
using smooth::SmoothOp;

namespace {

void expectOneError(const RenderResult& result, const char* text) {
  EXPECT_EQ(result.status, RenderStatus::Error);
  ASSERT_EQ(result.messages.size(), 1U);
  EXPECT_EQ(result.messages[0].severity, Severity::Error);
  EXPECT_EQ(result.messages[0].text, text);
  EXPECT_TRUE(result.image.planes.empty());
  EXPECT_TRUE(result.image.box.empty());
}

}  // namespace

TEST(Errors, inValidate_nothingIsRequestedOrOpened) {
  HostBench bench;
  bench.op().onValidate = [](SmoothOp& op, bool) { op.error("no %s at %d%%", "light", 7); };
  expectOneError(bench.render(), "no light at 7%");
  EXPECT_EQ(bench.op().rows, 0);
  EXPECT_EQ(bench.op().calls.back(), "validate(true)");
}

TEST(Errors, inRequest_nothingIsOpened) {
  HostBench bench;
  bench.op().onRequest = [](SmoothOp& op) { op.error("%s", "no request"); };
  expectOneError(bench.render(), "no request");
  EXPECT_EQ(bench.op().calls.back(), "request");
}

TEST(Errors, inOpen_noRowIsMade) {
  HostBench bench;
  bench.op().onOpen = [](SmoothOp& op) { op.error("%s", "no tables"); };
  expectOneError(bench.render(), "no tables");
  EXPECT_EQ(bench.op().rows, 0);
  EXPECT_EQ(bench.op().calls.back(), "close") << "what was opened is closed";
}

TEST(Errors, inARow_noFurtherRowIsMade) {
  HostBench bench;
  bench.options.threads = 1;
  bench.op().onRow = [](SmoothOp& op, int y) {
    if (y == 1) op.error("row %d", y);
  };
  expectOneError(bench.render(), "row 1");
  EXPECT_EQ(bench.op().rows, 3) << "rows -1, 0 and 1";
}

TEST(Errors, inClose_areReported) {
  HostBench bench;
  bench.op().onClose = [](SmoothOp& op) { op.error("%s", "jammed"); };
  expectOneError(bench.render(), "jammed");
}

TEST(Errors, longText_isKeptWhole) {
  HostBench bench;
  const std::string text(5000, 'x');
  bench.op().onValidate = [&](SmoothOp& op, bool) { op.error("%s", text.c_str()); };
  expectOneError(bench.render(), text.c_str());
}

TEST(Errors, lastUntilTheNextValidation) {
  HostBench bench;
  bench.op().onValidate = [](SmoothOp& op, bool) { op.error("%s", "once"); };
  bench.render();
  EXPECT_TRUE(bench.op().aborted()) << "an operator in error is not wanted any more";
  bench.op().onValidate = nullptr;
  const RenderResult result = bench.render();
  EXPECT_EQ(result.status, RenderStatus::Done);
  EXPECT_TRUE(result.messages.empty());
  EXPECT_FALSE(bench.node.hasError());
}

TEST(Errors, ofANodeThatIsRead_failTheRenderWithTheirText) {
  HostBench upstream;
  HostBench bench;
  ASSERT_TRUE(bench.node.connect(0, &upstream.op()));
  upstream.op().onOpen = [](SmoothOp& op) { op.error("%s", "upstream"); };
  expectOneError(bench.render(), "upstream");
}

TEST(Errors, ofAnInputWithoutANode_failTheRenderWithTheirText) {
  class Broken : public embedded::ImageInput {
   public:
    Broken() : ImageInput(smooth::markedImage(DD::Image::Box(0, 0, 4, 4))) {}

   protected:
    void _validate(bool for_real) override {
      ImageInput::_validate(for_real);
      error("%s", "unreadable");
    }
  };
  Broken broken;
  HostBench bench;
  ASSERT_TRUE(bench.node.connect(0, &broken));
  expectOneError(bench.render(), "unreadable");
  expectOneError(bench.render(), "unreadable");
  bench.node.connect(0, nullptr);
}

TEST(Warnings, reachTheCallerAndStopNothing) {
  HostBench bench;
  bench.op().onValidate = [](SmoothOp& op, bool) { op.warning("%s is dim", "it"); };
  const RenderResult result = bench.render();
  EXPECT_EQ(result.status, RenderStatus::Done);
  ASSERT_EQ(result.messages.size(), 1U) << "that of the last validation";
  EXPECT_EQ(result.messages[0].severity, Severity::Warning);
  EXPECT_EQ(result.messages[0].text, "it is dim");
}

TEST(Warnings, ofEveryRow_areKeptOnce) {
  HostBench bench;
  bench.op().onRow = [](SmoothOp& op, int) { op.warning("%s", "again"); };
  EXPECT_EQ(bench.render().messages.size(), 1U);
}

TEST(Exceptions, inAnyStep_becomeErrors) {
  const auto fail = [](auto&&...) { throw std::runtime_error("thrown 100%"); };
  using Install = void (*)(SmoothOp&, decltype(fail));
  const Install installs[] = {
      [](SmoothOp& op, decltype(fail) f) { op.onStore = f; },
      [](SmoothOp& op, decltype(fail) f) { op.onValidate = f; },
      [](SmoothOp& op, decltype(fail) f) { op.onRequest = f; },
      [](SmoothOp& op, decltype(fail) f) { op.onOpen = f; },
      [](SmoothOp& op, decltype(fail) f) { op.onRow = f; },
      [](SmoothOp& op, decltype(fail) f) { op.onClose = f; },
  };
  for (const Install install : installs) {
    HostBench bench;
    install(bench.op(), fail);
    expectOneError(bench.render(), "thrown 100%");
  }
}

TEST(Exceptions, badAllocAndOthers_haveTexts) {
  HostBench bench;
  bench.op().onRow = [](SmoothOp&, int) { throw std::bad_alloc(); };
  expectOneError(bench.render(), "out of memory");
  bench.op().onRow = [](SmoothOp&, int) { throw 7; };
  expectOneError(bench.render(), "unknown exception");
}

TEST(Exceptions, afterOne_theNextRenderIsWhole) {
  HostBench bench;
  bench.op().onOpen = [](SmoothOp&) { throw std::runtime_error("once"); };
  bench.render();
  bench.op().onOpen = nullptr;
  EXPECT_EQ(bench.render().status, RenderStatus::Done);
}

TEST(Exceptions, ofTheProgressCallback_becomeErrors) {
  HostBench bench;
  bench.options.progress = [](const embedded::Progress& progress) {
    if (progress.rowsTotal > 0) throw std::runtime_error("no display");
  };
  expectOneError(bench.render(), "no display");
}

TEST(Exceptions, moreMemoryThanThereIs_isAnError) {
  class Huge : public SmoothOp {
   public:
    using SmoothOp::SmoothOp;

   protected:
    void _validate(bool for_real) override {
      SmoothOp::_validate(for_real);
      info_.set(0, 0, 2000000000, 2000000000);
    }
  };
  const DD::Image::Op::Description description(
      "HostTestHuge", [](Node* node) -> DD::Image::Op* { return new Huge(node); });
  Node node(description);
  embedded::RenderOptions options;
  options.channels = DD::Image::Mask_RGBA;
  const RenderResult result = embedded::render(node, options);
  EXPECT_EQ(result.status, RenderStatus::Error);
  ASSERT_EQ(result.messages.size(), 1U);
}

TEST(Exceptions, operatorThatMakesNoPictures_isAnError) {
  const DD::Image::Op::Description description("HostTestNoPicture",
                                               [](Node* node) -> DD::Image::Op* {
                                                 class NoPicture : public DD::Image::Op {
                                                  public:
                                                   using Op::Op;
                                                   const char* Class() const override {
                                                     return "HostTestNoPicture";
                                                   }
                                                   const char* node_help() const override {
                                                     return "";
                                                   }
                                                 };
                                                 return new NoPicture(node);
                                               });
  Node node(description);
  embedded::RenderOptions options;
  options.channels = DD::Image::Mask_RGBA;
  expectOneError(embedded::render(node, options), "HostTestNoPicture makes no pictures");
}

TEST(Exceptions, classThatMakesNothing_isRefused) {
  const DD::Image::Op::Description description("HostTestNothing",
                                               [](Node*) -> DD::Image::Op* { return nullptr; });
  EXPECT_THROW(Node{description}, std::runtime_error);
}

TEST(Errors, ofAnInputWithoutANode_lastUntilTheNextRender) {
  SmoothOp source(nullptr);
  bool fails = true;
  source.onRow = [&](SmoothOp& op, int) {
    if (fails) op.error("%s", "no film");
  };
  HostBench bench;
  ASSERT_TRUE(bench.node.connect(0, &source));
  EXPECT_EQ(bench.render().status, RenderStatus::Error);
  fails = false;
  EXPECT_EQ(bench.render().status, RenderStatus::Done);
  bench.node.connect(0, nullptr);
}
