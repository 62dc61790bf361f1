// The public enumerations and the job-type code, which carries the kind and the state of a job.
#pragma once

#include <cstdint>

namespace qx {

/// Version-1 job codes. The mixed spelling of the names here and below is part of the public interface.
enum JobTypeConstants : std::int16_t {
  qxtJobTypeKunden = 10,
  qxtJobTypeVerträge = 20,
  qxtJobTypeAufträge = 30,
  qxtJobTypeKundenFehler = -11,
  qxtJobTypeVerträgeFehler = -21,
  qxtJobTypeAufträgeFehler = -31,
  qxtJobTypeKundenErledigt = 11,
  qxtJobTypeVerträgeErledigt = 21,
  qxtJobTypeAufträgeErledigt = 31,
  qxtJobTypeSubItem = 1001,
};

/// Version-2 job codes: tens digit = kind, units digit = state.
enum JobConstants2 : std::int16_t {
  qxtjobkunden = 10,
  qxtjobverträge = 20,
  qxtJobAufträge = 30,
  qxtjobkundenverträge = 40,
  qxtJobAuftragsPos = 50,
  qxtJobKundenWarning = 11,
  qxtJobVerträgeWarning = 21,
  qxtJobAufträgeWarning = 31,
  qxtJobKundenVerträgeWarning = 41,
  qxtJobKundenError = 12,
  qxtJobVerträgeError = 22,
  qxtJobAufträgeError = 32,
  qxtJobKundenVerträgeError = 42,
  qxtJobKundenDone = 13,
  qxtJobVerträgeDone = 23,
  qxtJobAufträgeDone = 33,
  qxtjobkundenverträgedone = 43,
  qxtJobKundenVerträgedel = 44,
};

/// What processing may do with the target record.
enum ImportTypeConstants : std::int16_t {
  qxtImportTypeNewOrUpdate = 0,
  qxtImportTypeNewOnly = 1,
  qxtImportTypeUpdateOnly = 2,
};

/// Processing result classes. `Done` is 4 on purpose; these are neither the units digit of a job code nor
/// the values of the staging column of the same name.
enum class ImportType : std::int16_t { Waiting = 0, Warning = 1, Error = 2, Done = 4 };

/// Selection of a processing run. The values look like flags but are compared for equality only.
enum class qxProcessState : std::int16_t {
  ProcessAll = 0,
  ProcessKunden = 1,
  ProcessVerträge = 2,
  ProcessAufträge = 4,
  ProcessZubehör = 8,
};

/// Whether the job view is loaded.
enum JobViewFormState : std::int16_t {
  qxtViewJobForm_Nothing = 0,
  qxtViewJobForm_Load = 1,
  qxtViewJobForm_Unload = 2,
};

/// The value of the column `ImportType` of every staged job.
inline constexpr std::int16_t stagedImportType = 10;

/// Severity of the findings of a job check; that of a job is the highest.
enum class CheckStatus : std::int16_t { Clean = 10, Warning = 20, Error = 30 };

constexpr CheckStatus worse(CheckStatus a, CheckStatus b) { return a < b ? b : a; }

/// The units digit of a version-2 job code.
enum class JobState : std::int16_t { Waiting = 0, Warning = 1, Error = 2, Done = 3, Deleted = 4 };

/// The state of a version-2 code. Negative version-1 codes have no such state: use their text form.
constexpr JobState stateOf(std::int16_t jobType) { return static_cast<JobState>(jobType % 10); }

/// The waiting code of the kind: 12 -> 10, 43 -> 40.
constexpr std::int16_t kindOf(std::int16_t jobType) {
  return static_cast<std::int16_t>(jobType - jobType % 10);
}

constexpr std::int16_t withState(std::int16_t jobType, JobState state) {
  return static_cast<std::int16_t>(kindOf(jobType) + static_cast<std::int16_t>(state));
}

/// True for the codes that a clerk or program may stage afresh: 10, 20, 30 and 40.
constexpr bool isWaitingHeader(std::int16_t jobType) {
  return jobType == qxtjobkunden || jobType == qxtjobverträge || jobType == qxtJobAufträge ||
         jobType == qxtjobkundenverträge;
}

} // namespace qx
