#include "automation/classes/class_tables.h"

namespace qx::automation {
namespace {

template <class E>
EnumerationTable::Constant constant(std::string_view name, E value) {
  return {name, static_cast<std::int32_t>(value)};
}

std::vector<EnumerationTable> allEnumerations() {
  return {
      {"JobTypeConstants",
       "Job codes of ImportJobObject.",
       {constant("qxtJobTypeKunden", qxtJobTypeKunden), constant("qxtJobTypeVerträge", qxtJobTypeVerträge),
        constant("qxtJobTypeAufträge", qxtJobTypeAufträge),
        constant("qxtJobTypeKundenFehler", qxtJobTypeKundenFehler),
        constant("qxtJobTypeVerträgeFehler", qxtJobTypeVerträgeFehler),
        constant("qxtJobTypeAufträgeFehler", qxtJobTypeAufträgeFehler),
        constant("qxtJobTypeKundenErledigt", qxtJobTypeKundenErledigt),
        constant("qxtJobTypeVerträgeErledigt", qxtJobTypeVerträgeErledigt),
        constant("qxtJobTypeAufträgeErledigt", qxtJobTypeAufträgeErledigt),
        constant("qxtJobTypeSubItem", qxtJobTypeSubItem)}},
      {"JobConstants2",
       "Job codes of the entry objects and of ImportJobObject2: tens digit kind, units digit state.",
       {constant("qxtjobkunden", qxtjobkunden), constant("qxtjobverträge", qxtjobverträge),
        constant("qxtJobAufträge", qxtJobAufträge), constant("qxtjobkundenverträge", qxtjobkundenverträge),
        constant("qxtJobAuftragsPos", qxtJobAuftragsPos),
        constant("qxtJobKundenWarning", qxtJobKundenWarning),
        constant("qxtJobVerträgeWarning", qxtJobVerträgeWarning),
        constant("qxtJobAufträgeWarning", qxtJobAufträgeWarning),
        constant("qxtJobKundenVerträgeWarning", qxtJobKundenVerträgeWarning),
        constant("qxtJobKundenError", qxtJobKundenError),
        constant("qxtJobVerträgeError", qxtJobVerträgeError),
        constant("qxtJobAufträgeError", qxtJobAufträgeError),
        constant("qxtJobKundenVerträgeError", qxtJobKundenVerträgeError),
        constant("qxtJobKundenDone", qxtJobKundenDone), constant("qxtJobVerträgeDone", qxtJobVerträgeDone),
        constant("qxtJobAufträgeDone", qxtJobAufträgeDone),
        constant("qxtjobkundenverträgedone", qxtjobkundenverträgedone),
        constant("qxtJobKundenVerträgedel", qxtJobKundenVerträgedel)}},
      {"ImportTypeConstants",
       "What processing may do with the target record.",
       {constant("qxtImportTypeNewOrUpdate", qxtImportTypeNewOrUpdate),
        constant("qxtImportTypeNewOnly", qxtImportTypeNewOnly),
        constant("qxtImportTypeUpdateOnly", qxtImportTypeUpdateOnly)}},
      {"ImportType",
       "Classes of results.",
       {constant("Waiting", ImportType::Waiting), constant("Warning", ImportType::Warning),
        constant("Error", ImportType::Error), constant("Done", ImportType::Done)}},
      {"qxProcessState",
       "What a run processes; any sum of these processes nothing.",
       {constant("ProcessAll", qxProcessState::ProcessAll),
        constant("ProcessKunden", qxProcessState::ProcessKunden),
        constant("ProcessVerträge", qxProcessState::ProcessVerträge),
        constant("ProcessAufträge", qxProcessState::ProcessAufträge),
        constant("ProcessZubehör", qxProcessState::ProcessZubehör)}},
      {"JobViewFormState",
       "Whether the job view is loaded.",
       {constant("qxtViewJobForm_Nothing", qxtViewJobForm_Nothing),
        constant("qxtViewJobForm_Load", qxtViewJobForm_Load),
        constant("qxtViewJobForm_Unload", qxtViewJobForm_Unload)}},
  };
}

} // namespace

const std::vector<EnumerationTable>& publicEnumerations() {
  static const std::vector<EnumerationTable> all = allEnumerations();
  return all;
}

} // namespace qx::automation
