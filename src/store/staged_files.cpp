#include "store/staged_files.h"

namespace qx {

void enterStagedFile(Connection& connection, const StagedFile& file, std::string_view timeStamp) {
  connection.insert("Eingangsdateien",
                    sql("Insert Into Eingangsdateien (Kennung, Ordner, Dateiname, Zeitpunkt) Values ('"_sql,
                        value(file.key), "', '"_sql, value(file.folder), "', '"_sql, value(file.name),
                        "', '"_sql, value(timeStamp), "')"_sql));
}

bool isStagedFile(Connection& connection, std::string_view key) {
  return !connection
              .open(sql("Select Kennung From Eingangsdateien Where Kennung = '"_sql, value(key), "'"_sql))
              ->eof();
}

void removeStagedFile(Connection& connection, std::string_view key) {
  connection.execute(sql("Delete From Eingangsdateien Where Kennung = '"_sql, value(key), "'"_sql));
}

} // namespace qx
