#pragma once

/// Another process, which hears and answers in lines.

#include <sys/types.h>

#include <string>
#include <vector>

namespace drevin::bench {

/// What runs the program at hand once more.
std::string thisProgram();

class ChildProcess {
 public:
  /// Runs `program` with these arguments, of which the first is its name. Throws std::runtime_error
  /// if there is no other process to be had.
  ChildProcess(const std::string& program, std::vector<std::string> arguments);
  /// Ends what it hears and waits for it.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Gives it a line on its standard input. Throws std::runtime_error if nothing hears.
  void tell(const std::string& line);
  /// Waits for the next line of its standard output. Throws std::runtime_error if it ends without.
  std::string answer();
  /// Ends what it hears and waits for it. Throws std::runtime_error if it fails.
  void finish();

 private:
  /// The status that it ended with; 0 if that is known already.
  int wait();

  std::string name_;
  pid_t process_ = -1;
  int line_ = -1;  ///< its standard input and output
  std::string heard_;
};

}  // namespace drevin::bench
