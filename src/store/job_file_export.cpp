#include "store/job_file_export.h"

#include "platform/failure.h"
#include "platform/path_text.h"
#include "store/job_file_line.h"
#include "store/job_file_target.h"
#include "store/job_file_text.h"
#include "store/job_lines.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace qx {
namespace {

struct FileColumn {
  ColumnName name;
  FieldKind kind = FieldKind::Text;
};

/// The columns behind a line. Those that the record lacks are texts but for the two type columns.
template <const auto& table, const auto& line, const auto& order>
constexpr auto fileColumns = [] {
  const auto column = [](std::size_t i) {
    const std::string_view name = line[i];
    const bool type = name == "ImportType" || name == "Preistyp";
    if (order[i] == noProperty)
      return FileColumn{ColumnName(name), type ? FieldKind::Int16 : FieldKind::Text};
    const auto& field = table[order[i]];
    return FileColumn{ColumnName(field.stored() ? field.column : name), field.kind};
  };
  return [&column]<std::size_t... i>(std::index_sequence<i...>) {
    return std::array<FileColumn, sizeof...(i)>{column(i)...};
  }
  (std::make_index_sequence<line.size()>{});
}();

constexpr std::span<const FileColumn> columnsOf(LineKind kind) {
  switch (kind) {
  case LineKind::Customer:
    return fileColumns<kundeFields, customerLine, customerLineOrder>;
  case LineKind::Contract:
    return fileColumns<vertragFields, contractLine, contractLineOrder>;
  case LineKind::Order:
    return fileColumns<auftragFields, orderLine, orderLineOrder>;
  case LineKind::Position:
    return fileColumns<auftragsPosFields, positionLine, positionLineOrder>;
  case LineKind::None:
    break;
  }
  return {};
}

Sql everyJob() { return sql("Select * From ImportKopf Order by Eingangsdatum"_sql); }
Sql everyPosition() { return sql("Select * From ImportPos"_sql); }
Sql everyVersion1Job() { return sql("Select * From [ImportKopf]"_sql); }
Sql countJobs() { return sql("Select Count(*) From ImportKopf"_sql); }
Sql countPositions() { return sql("Select Count(*) From ImportPos"_sql); }

class JobFileExport {
public:
  JobFileExport(Environment& environment, JobFileVersion version, JobFileObserver* observer,
                const JobKeys* only)
      : connection_(activeConnection(environment)), view_(connection_), version_(version),
        observer_(observer), only_(only), writer_(version == JobFileVersion::One),
        lost_(environment.diagnostics) {
    if (observer_ == nullptr) return;
    for (const Sql& query : {countJobs(), countPositions()})
      total_ +=
          static_cast<std::uintmax_t>(connection_.open(query)->value(std::size_t{0}).integer().value_or(0));
  }

  void writeTo(JobFileTarget& target) {
    target_ = &target;
    writeBanner();
    if (version_ == JobFileVersion::One)
      writeVersion1();
    else
      writeVersion2();
    lost_.finish();
  }
  const JobFileCounts& counts() const { return counts_; }

private:
  void writeBanner() {
    writer_.begin();
    writer_.add(FieldKind::Text, Value(version_ == JobFileVersion::One ? jobFileBanner1 : jobFileBanner));
    target_->write(writer_.end());
  }

  void writeVersion2() {
    for (const auto rows = connection_.openStream(everyJob()); !rows->eof(); rows->moveNext()) {
      if (!isWanted(*rows)) continue;
      const LineKind kind = lineKind(rows->value("JobType").integer().value_or(0));
      if (isHeader(kind))
        writeLine(*rows, columnsOf(kind), counts_.jobs);
      else
        ++counts_.skipped;
      advance();
    }
    for (const auto rows = connection_.openStream(everyPosition()); !rows->eof(); rows->moveNext()) {
      if (!isWanted(*rows)) continue;
      const bool read = lineKind(rows->value("JobType").integer().value_or(0)) == LineKind::Position;
      writeLine(*rows, columnsOf(LineKind::Position), counts_.positions);
      if (!read && !writer_.unreadable()) noteUnreadable(*rows);
      advance();
    }
  }

  void writeVersion1() {
    constexpr std::span<const FileColumn> header =
        fileColumns<importJobFields, version1HeaderLine, version1HeaderOrder>;
    for (const auto rows = connection_.openStream(everyVersion1Job()); !rows->eof(); rows->moveNext()) {
      if (!isWanted(*rows)) continue;
      if (isVersion1Header(rows->value("JobType").integer().value_or(0))) {
        writeLine(*rows, header, counts_.jobs);
        writeVersion1Positions(rows->text("JobID"));
      } else {
        ++counts_.skipped;
      }
      advance();
    }
  }

  /// The first field is always the version-1 mark of a position, by which it is recognised.
  void writeVersion1Positions(const std::string& jobId) {
    constexpr std::span<const FileColumn> position =
        fileColumns<importJobSubItemFields, version1PositionLine, version1PositionOrder>;
    for (const auto rows = openVersion1Positions(connection_, jobId); !rows->eof(); rows->moveNext()) {
      writer_.begin();
      writer_.add(FieldKind::Int16, Value(qxtJobTypeSubItem));
      writeRest(*rows, position.subspan(1), counts_.positions);
      advance();
    }
  }

  bool isWanted(Recordset& row) const { return only_ == nullptr || only_->contains(row.text("JobID")); }

  void noteUnreadable(Recordset& row) {
    ++counts_.unreadable;
    if (observer_ != nullptr) observer_->unreadable(row.text("JobID"));
  }

  void writeLine(Recordset& row, std::span<const FileColumn> columns, std::int64_t& count) {
    writer_.begin();
    writeRest(row, columns, count);
  }

  void writeRest(Recordset& row, std::span<const FileColumn> columns, std::int64_t& count) {
    for (const FileColumn& column : columns) writer_.add(column.kind, row.value(column.name));
    target_->write(writer_.end());
    ++count;
    if (writer_.unreadable()) noteUnreadable(row);
    if (writer_.replaced() > 0) lost_.note(row.text("JobID"), writer_.replaced());
  }

  void advance() {
    ++done_;
    if (observer_ != nullptr) observer_->progress(done_, total_);
  }

  Connection& connection_;
  ReadView view_; ///< another program may write between two of the statements
  JobFileVersion version_;
  JobFileObserver* observer_;
  const JobKeys* only_; ///< null for all
  JobFileLineWriter writer_;
  LostCharacters lost_;
  JobFileTarget* target_ = nullptr;
  JobFileCounts counts_;
  std::uintmax_t done_ = 0;
  std::uintmax_t total_ = 0;
};

/// Ends a file whose writing broke off.
void endBroken(Environment& environment, JobFileTarget& target, JobFileReport& report) {
  environment.diagnostics.report({"Export", report.failure, {}});
  report.backup = target.finishBroken();
}

/// `open` makes the target.
template <class Open>
JobFileReport exportTo(Environment& environment, JobFileVersion version, JobFileObserver* observer,
                       const JobKeys* only, Open&& open) {
  JobFileReport report;
  try {
    JobFileExport job(environment, version, observer, only);
    auto target = open();
    try {
      job.writeTo(*target);
      target->finish();
      report.end = JobFileEnd::Complete;
    } catch (const std::exception& failure) {
      report.failure = plainCause(failure);
      endBroken(environment, *target, report);
    }
    report.counts = job.counts();
  } catch (const std::exception& failure) {
    if (const auto end = endOfTarget(failure)) report.end = *end;
    if (report.failure.empty()) report.failure = plainCause(failure);
    environment.diagnostics.report({"Export", report.failure, {}});
  }
  return report;
}

} // namespace

JobFileReport exportJobFile(Environment& environment, std::string_view fileName, JobFileVersion version,
                            JobFileObserver* observer, const JobKeys* only) {
  return exportTo(environment, version, observer, only, [&] {
    return std::make_unique<JobFileTarget>(pathOf(fileName), protectedFiles(environment),
                                           permissionsOfNewFile(environment));
  });
}

JobFileReport exportJobFile(Environment& environment, const OpenFile& file, JobFileVersion version,
                            JobFileObserver* observer) {
  return exportTo(environment, version, observer, nullptr,
                  [&] { return std::make_unique<JobFileTarget>(file); });
}

} // namespace qx
