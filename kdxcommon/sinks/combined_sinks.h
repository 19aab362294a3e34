// Log sinks for special needs: several destinations at once, each with its own level, and the last lines in memory.
//
//   auto memory = std::make_shared<kdx::MemoryLineSink>(200);                      // everything, for a crash report
//   auto log = std::make_shared<kdx::FileLineSink>("agent.log");                   // failures only
//   kdx::EmbeddedSite::current().setLineSink(std::make_shared<kdx::TeeLineSink>(
//       std::vector<kdx::TeeLineSink::Branch>{{memory, 4}, {log, -1}}));
//
// Throws only std::bad_alloc, as line_sink.h says.

#ifndef KDXCOMMON_SINKS_COMBINED_SINKS_H_
#define KDXCOMMON_SINKS_COMBINED_SINKS_H_

#include <cstddef>
#include <memory>
#include <vector>

#include "kdxcommon/base/export.h"
#include "kdxcommon/base/string_types.h"
#include "kdxcommon/sinks/line_sink.h"

namespace kdx {

/// Passes each record to several sinks, in their order. Thread-safe as far as these are; holds no lock. Disks, forks
/// and other processes matter to it as to these. The site's debug level still decides first which records there are, so
/// it must be the highest of the branches' levels.
class KDX_EXPORT TeeLineSink : public LineSink {
 public:
  /// A sink, not null, and the highest level of the records that it gets. It gets preformatted texts, too, which have
  /// no level.
  struct Branch {
    std::shared_ptr<LineSink> sink;  ///< not null
    int level = 0;                   ///< the highest level that it gets
  };

  /// Passes records to `branches`; to none if there are none. Throws only std::bad_alloc.
  explicit TeeLineSink(std::vector<Branch> branches);
  ~TeeLineSink() override;

  /// Ignores the exceptions of a sink, so that the others get the record.
  void write(const LogRecord& record) override;
  bool drops() const override;

 private:
  const std::vector<Branch> branches_;
};

/// Keeps the last lines in memory, for a crash report or a test. Thread-safe, also in a forked child, which has a copy
/// of its own. Nothing reaches a disk unless `writeTo` is called; a process that ends takes the lines with it.
class KDX_EXPORT MemoryLineSink : public LineSink {
 public:
  /// Keeps up to `lines` lines; at least one. Their memory is reused for later lines and otherwise kept.
  explicit MemoryLineSink(std::size_t lines, LogFormat format = LogFormat::kText);
  ~MemoryLineSink() override;

  void write(const LogRecord& record) override;

  /// Returns the lines without their line breaks, oldest first. Throws only std::bad_alloc.
  std::vector<string> lines() const;

  /// Writes the lines to a descriptor, oldest first. Meant for a handler of a crash: doesn't allocate memory, and
  /// doesn't wait for a thread that is using the sink; returns false and writes nothing if there is one. Returns
  /// whether everything was written.
  bool writeTo(int descriptor) const noexcept;

 private:
  const string& line(std::size_t age) const;

  const LogFormat format_;
  std::vector<string> ring_;
  std::size_t written_ = 0;  // the number of lines so far
};

}  // namespace kdx

#endif  // KDXCOMMON_SINKS_COMBINED_SINKS_H_
