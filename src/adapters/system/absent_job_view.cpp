#include "adapters/system/absent_job_view.h"

namespace qx {

void AbsentJobView::open() {
  desktop_.show({"Dieses Programm hat kein Fenster. Der Befehl 'qximportjob view' öffnet die "
                 "Importvorgänge.",
                 std::string(defaultTitle), MessageIcon::Information});
}

} // namespace qx
