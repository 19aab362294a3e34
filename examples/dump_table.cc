#include "dump_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <iomanip>
#include <ostream>
#include <set>
#include <string_view>
#include <tuple>

#include "console.h"
#include "failure.h"
#include "input_text.h"
#include "kdxcommon/dumpfile/dump_file.h"

namespace collect_job {
namespace {

constexpr std::string_view kFailedEnding = ".failed";

// Takes pieces off the front of a name.
class NameReader {
 public:
  explicit NameReader(std::string_view rest) : rest_(rest) {}

  bool skip(std::string_view piece) {
    if (!rest_.starts_with(piece)) return false;
    rest_.remove_prefix(piece.size());
    return true;
  }
  std::optional<std::int64_t> number() {
    std::int64_t value = 0;
    const auto [stop, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (error != std::errc()) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(stop - rest_.data()));
    return value;
  }
  bool atEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

// PREFIX_SC_7_DISCOVERY_JOB_3456.txt or PREFIX_SC_7_JOB_3456_ITR_2.txt, and .failed behind either.
Dump dumpOfName(const std::string& name, const std::string& prefix) {
  const bool failed = name.ends_with(kFailedEnding);
  std::optional<std::int64_t> job;
  std::optional<std::int64_t> iteration;
  NameReader reader(name);
  bool known = reader.skip(prefix) && reader.skip("_SC_") && reader.number();
  if (reader.skip("_DISCOVERY_JOB_")) {
    known = known && (job = reader.number());
  } else {
    known = known && reader.skip("_JOB_") && (job = reader.number());
    known = known && reader.skip("_ITR_") && (iteration = reader.number());
  }
  known = known && reader.skip(".txt") && (!failed || reader.skip(kFailedEnding)) && reader.atEnd();
  if (!known) return {name, std::nullopt, std::nullopt, 0, failed};
  return {name, job, iteration, 0, failed};
}

std::string numberOrDash(const std::optional<std::int64_t>& number) {
  return number ? std::to_string(*number) : "-";
}

using Row = std::array<std::string, 5>;

Row rowOf(const Dump& dump) {
  return {printable(dump.name), numberOrDash(dump.job), numberOrDash(dump.iteration), std::to_string(dump.bytes),
          dump.failed ? "failed" : "dumped"};
}

}  // namespace

std::vector<Dump> listDumps(const std::string& directory, const std::string& prefix) {
  std::vector<kdx::CJxString> names;
  for (const char* ending : {"_*.txt", "_*.failed"}) {
    const kdx::CJxString pattern = kdx::CJxString(prefix.c_str()) + ending;
    if (kdx::CDumpFile::getFilesOfPattern(directory.c_str(), pattern, names).IsErrorSet()) {
      throw Failure(kCannotWrite, "can't list the directory " + directory);
    }
  }
  std::vector<Dump> dumps;
  for (const kdx::CJxString& name : names) {
    Dump dump = dumpOfName(name.c_str(), prefix);
    std::error_code vanished;
    dump.bytes = std::filesystem::file_size(pathOf(directory) / pathOf(dump.name), vanished);
    if (!vanished) dumps.push_back(std::move(dump));
  }
  std::sort(dumps.begin(), dumps.end(), [](const Dump& a, const Dump& b) {
    return std::tie(a.job, a.iteration, a.name) < std::tie(b.job, b.iteration, b.name);
  });
  return dumps;
}

std::vector<Dump> prunedDumps(const std::vector<Dump>& before, const std::vector<Dump>& after,
                              std::int64_t runningJob) {
  std::set<std::string> standing;
  for (const Dump& dump : after) standing.insert(dump.name);
  std::vector<Dump> pruned;
  for (const Dump& dump : before) {
    const bool renamed = dump.job == runningJob && standing.contains(dump.name + std::string(kFailedEnding));
    if (!standing.contains(dump.name) && !renamed) pruned.push_back(dump);
  }
  return pruned;
}

void printDumps(std::ostream& out, const std::vector<Dump>& dumps) {
  std::vector<Row> rows = {{"name", "job", "iteration", "bytes", "state"}};
  for (const Dump& dump : dumps) rows.push_back(rowOf(dump));
  std::array<std::size_t, 5> widths{};
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  for (const Row& row : rows) {
    out << "  " << std::left << std::setw(static_cast<int>(widths[0])) << row[0] << std::right;
    for (std::size_t i = 1; i <= 3; ++i) out << "  " << std::setw(static_cast<int>(widths[i])) << row[i];
    out << "  " << row[4] << '\n';
  }
}

}  // namespace collect_job
