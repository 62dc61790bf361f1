// Any bytes as a JSON file of jobs.
#include "cli/exit_code.h"
#include "cli/stage_reader.h"
#include "cli/staging_area.h"
#include "support/erp_file.h"

#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

using namespace qx;
using namespace qx::cli;

namespace {

/// A file in memory under a name that can be opened.
class MemoryFile {
public:
  MemoryFile(const std::uint8_t* data, std::size_t size) : file_(memfd_create("input", MFD_CLOEXEC)) {
    if (file_ < 0 || write(file_, data, size) != static_cast<ssize_t>(size)) std::abort();
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(file_); }
  std::string name() const { return "/proc/self/fd/" + std::to_string(file_); }

private:
  int file_;
};

/// Ends what an input has begun: its transaction, if it came so far, and its temporary tables.
void tidyUp(Connection& connection) {
  try {
    connection.execute(sql("ROLLBACK"_sql));
  } catch (const DatabaseError&) {
    // The input was refused before the transaction began.
  }
  connection.execute(sql("DROP TABLE temp.StageKopf"_sql));
  connection.execute(sql("DROP TABLE temp.StagePos"_sql));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static ErpFile erp;
  const MemoryFile file(data, size);
  StagingArea area(erp.connection());
  try {
    TextFile source(file.name());
    JobAssembler assembler(erp.environment, area, source.name());
    area.begin();
    readJobs(source, assembler);
    area.finish();
  } catch (const ProgramError& refused) {
    // Bad input is the only reason to refuse it.
    if (refused.code() != ExitCode::BadInput) std::abort();
  }
  tidyUp(erp.connection());
  return 0;
}
