#include "frames/ChildProcess.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace drevin::bench {
namespace {

ChildProcess shell(const std::string& script) {
  return {"/bin/sh", {"sh", "-c", script}};
}

TEST(ChildProcess, lines_areAnsweredInTheirOrder) {
  ChildProcess echo("/bin/cat", {"cat"});
  echo.tell("first");
  echo.tell("second");
  EXPECT_EQ(echo.answer(), "first");
  EXPECT_EQ(echo.answer(), "second");
  EXPECT_NO_THROW(echo.finish());
}

TEST(ChildProcess, lineLongerThanIsReadAtOnce_isWhole) {
  ChildProcess echo("/bin/cat", {"cat"});
  const std::string line(1000, 'x');
  echo.tell(line);
  EXPECT_EQ(echo.answer(), line);
}

TEST(ChildProcess, thatEndsWithoutALine_throws) {
  EXPECT_THROW(shell("printf unfinished").answer(), std::runtime_error);
}

TEST(ChildProcess, thatFails_throwsAtTheEnd) {
  ChildProcess child = shell("echo done; exit 3");
  EXPECT_EQ(child.answer(), "done");
  EXPECT_THROW(child.finish(), std::runtime_error);
}

TEST(ChildProcess, thatCannotBeRun_throws) {
  ChildProcess child("/no/such/program", {"program"});
  EXPECT_THROW(child.answer(), std::runtime_error);
  EXPECT_THROW(child.finish(), std::runtime_error);
}

// Told nothing that ends this program, which is what writing to the dead does otherwise.
TEST(ChildProcess, thatHasEnded_isToldNothingAndThrows) {
  ChildProcess child = shell("echo gone");
  EXPECT_EQ(child.answer(), "gone");
  child.finish();
  EXPECT_THROW(child.tell("anyone?"), std::runtime_error);
}

TEST(ChildProcess, another_doesNotKeepTheFirstFromItsEnd) {
  ChildProcess first("/bin/cat", {"cat"});
  const ChildProcess second("/bin/cat", {"cat"});
  EXPECT_NO_THROW(first.finish());
}

}  // namespace
}  // namespace drevin::bench
