// Runs a program as a user does, through the system's command shell.

#ifndef KDXCOMMON_TESTING_RUN_PROGRAM_H_
#define KDXCOMMON_TESTING_RUN_PROGRAM_H_

#include <cstdlib>
#include <filesystem>
#include <string>

#include "kdxcommon/testing/temporary_directory.h"

namespace kdx::testing {

struct Outcome {
  int status;
  std::string out;  ///< lines end with a line feed on every system, as in `err`
  std::string err;
};

/// `program` is a path, `arguments` are as the shell takes them; the output goes through files of `directory`.
inline Outcome runProgram(const char* program, const std::string& arguments, const TemporaryDirectory& directory) {
  std::string command = std::filesystem::path(program).make_preferred().string() + " " + arguments;
  command += " >" + directory.path("out") + " 2>" + directory.path("err");
  const int status = std::system(command.c_str());
  const auto text = [&directory](const char* name) {
    std::string lines = directory.read(name);
    std::erase(lines, '\r');
    return lines;
  };
  // POSIX keeps the exit status in the second byte.
  return {status > 0xFF ? status >> 8 : status, text("out"), text("err")};
}

}  // namespace kdx::testing

#endif  // KDXCOMMON_TESTING_RUN_PROGRAM_H_
