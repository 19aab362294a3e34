// Reads the XML texts that a job dumps from files, pipes and the standard input, and converts them to UTF-16.

#ifndef KDXCOMMON_EXAMPLES_INPUT_TEXT_H_
#define KDXCOMMON_EXAMPLES_INPUT_TEXT_H_

#include <stdexcept>
#include <string>

#include "kdxcommon/base/string_types.h"

/// The exit statuses, from 0 in the order of `--help`.
enum ExitStatus { kDone, kUnexpected, kBadUsage, kUnreadable, kInvalid, kCannotWrite, kRefused, kCollectionOff, kGone };

/// Ends the program with an exit status and a line on the standard error stream that contains the reason.
struct Failure : std::runtime_error {
  Failure(ExitStatus endsWith, const std::string& reason) : std::runtime_error(reason), status(endsWith) {}
  ExitStatus status;
};

struct InputText {
  kdx::wstring text;      ///< without a byte order mark; an XML declaration names UTF-8 or no encoding
  std::size_t utf8Bytes;  ///< the length of its UTF-8 form
};

/// Reads the text `name`: a file or pipe, `-` for the standard input, empty for the sample. It must be UTF-8 with or
/// without a byte order mark, or UTF-16 with one. Throws a Failure: kUnreadable if it can't be read; kInvalid if it is
/// not valid in its encoding, contains a NUL character, which would end its dump, or declares another encoding that may
/// be the actual one.
InputText readInput(const std::string& name);

#endif  // KDXCOMMON_EXAMPLES_INPUT_TEXT_H_
