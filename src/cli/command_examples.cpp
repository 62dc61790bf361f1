#include "cli/command_examples.h"

namespace qx::cli {
namespace {

constexpr auto examples = std::to_array<CommandExamples>(
    {{"init", {"qximportjob init", "qximportjob --db /srv/import/jobs.db init --shared"}},
     {"stage",
      {"qximportjob stage orders.json --partial --rejects rejected.json",
       "qximportjob stage --watch /srv/import/inbox"}},
     {"convert",
      {"qximportjob convert --map shop.ini orders.csv --output orders.json",
       "qximportjob convert --map shop.ini orders.csv | qximportjob stage -"}},
     {"schema", {"qximportjob schema auftrag > auftrag.schema.json", "qximportjob schema --output process"}},
     {"list",
      {"qximportjob list --state error --sort -eingang",
       "qximportjob list --since 01.11.2026 --columns JobID,Kundennummer,Fehlertext --csv"}},
     {"show", {"qximportjob show DEMO-16", "qximportjob show DEMO-16 --json"}},
     {"check", {"qximportjob check", "qximportjob check DEMO-12 DEMO-13 --json"}},
     {"explain", {"qximportjob explain order.price.differs", "qximportjob explain DEMO-16"}},
     {"delete",
      {"qximportjob delete DEMO-16 --dry-run",
       "qximportjob delete DEMO-16 --with-contracts --keep demo-16.json"}},
     {"purge",
      {"qximportjob purge --before 01.01.2026 --dry-run",
       "qximportjob purge --before 01.01.2026 --keep done-2025.json"}},
     {"process",
      {"qximportjob process --quiet --wait=10min", "qximportjob process --select orders --json=lines"}},
     {"release", {"qximportjob release DEMO-12 DEMO-13", "qximportjob release --all-warnings"}},
     {"results",
      {"qximportjob results --since 24.11.2026",
       "qximportjob results --after start --limit 500 --json=lines"}},
     {"protocol", {"qximportjob protocol", "qximportjob protocol --date 24.11.2026 --json"}},
     {"protocol purge",
      {"qximportjob protocol purge --before 01.01.2025",
       "qximportjob protocol purge --before 01.01.2025 --json"}},
     {"status",
      {"qximportjob status", "qximportjob status --prometheus > /var/lib/node_exporter/qximportjob.prom"}},
     {"lock", {"qximportjob lock show", "qximportjob lock release"}},
     {"lock show", {"qximportjob lock show", "qximportjob lock show --json"}},
     {"lock release", {"qximportjob lock release", "qximportjob lock release --force"}},
     {"import", {"qximportjob import jobs.edi", "qximportjob import jobs.aim --version1"}},
     {"export", {"qximportjob export jobs.edi", "qximportjob export - | gzip > jobs.edi.gz"}},
     {"scramble",
      {"qximportjob scramble jobs.edi scrambled.edi", "qximportjob scramble - - < jobs.edi > scrambled.edi"}},
     {"unscramble",
      {"qximportjob unscramble scrambled.edi jobs.edi", "qximportjob unscramble jobs.edi jobs.edi"}},
     {"settings",
      {"qximportjob settings list", "qximportjob settings set ImportJob2 AutomatischVerarbeiten 1"}},
     {"settings list", {"qximportjob settings list", "qximportjob settings list --json"}},
     {"settings get",
      {"qximportjob settings get ImportJob2 KundeDelete", "qximportjob settings get MAIN MainWidth --local"}},
     {"settings set",
      {"qximportjob settings set ImportJob2 AutomatischVerarbeiten 1",
       "qximportjob settings set Allgemein DatumMwStÄnderung 01.01.2027"}},
     {"settings export", {"qximportjob settings export options.ini", "qximportjob settings export -"}},
     {"settings import",
      {"qximportjob settings import options.ini", "qximportjob settings import - < options.ini"}},
     {"backup", {"qximportjob backup /backup/jobs.db", "qximportjob backup /backup/jobs.db --replace"}},
     {"upgrade", {"qximportjob upgrade", "qximportjob upgrade --backup-made --db \"odbc:DSN=erp\""}},
     {"view", {"qximportjob view", "qximportjob view jobs.edi"}},
     {"completion",
      {"qximportjob completion bash > /etc/bash_completion.d/qximportjob",
       "qximportjob completion fish > ~/.config/fish/completions/qximportjob.fish"}},
     {"help", {"qximportjob help", "qximportjob help settings set"}}});

constexpr auto environment = std::to_array<std::string_view>(
    {"QXIMPORTJOB_DB     the database, when --db does not name it",
     "XDG_DATA_HOME      the folder of the default database; else ~/.local/share",
     "QXIMPORTJOB_GROUP  how many jobs are committed together, for measurements",
     "NO_COLOR           no colours, when it is not empty",
     "PAGER              the program that shows long texts on a terminal"});

} // namespace

std::span<const CommandExamples> commandExamples() { return examples; }

std::span<const std::string_view> environmentLines() { return environment; }

} // namespace qx::cli
