#include "adapters/sql/staged_contents.h"

#include "adapters/sql/staging_conflicts.h"
#include "platform/column_name.h"
#include "platform/value.h"

#include <algorithm>
#include <array>

namespace qx::relational {

void StagedContents::begin() {
  const std::vector<std::string> tables = connection_.tableNames();
  const auto has = [&](ColumnName wanted) {
    return std::ranges::any_of(tables, [&](const std::string& table) { return ColumnName(table) == wanted; });
  };
  remembered_ = has("Vorgangsinhalte") && has("Zaehlerstaende");
  knowsChanges_ = has("Zustandswechsel");
  if (!remembered_) return;
  connection_.execute(sql("DROP TABLE IF EXISTS StageGleich"_sql));
  connection_.execute(
      sql("CREATE TEMPORARY TABLE StageGleich AS SELECT JobID, Kennung, Zeitpunkt, JobID AS AndererJob, "
          "CAST(0 AS BIGINT) AS Vorgang, CAST(0 AS BIGINT) AS Zeile, CAST(0 AS BIGINT) AS VorigerVorgang "
          "FROM Vorgangsinhalte WHERE 0 = 1"_sql));
}

void StagedContents::await() {
  if (!remembered_) return;
  const std::array row{ColumnValue{"Zaehler", Value("Vorgangsinhalte")},
                       ColumnValue{"Stand", Value(std::int64_t{0})}};
  connection_.put("Zaehlerstaende", row, 1);
}

void StagedContents::find(bool inFile) {
  if (!remembered_) return;
  entered_ = 0;
  const SqlName n = name(number_);
  connection_.execute(sql("DELETE FROM StageGleich"_sql));
  const std::int64_t known = connection_.execute(sql(
      "INSERT INTO StageGleich (JobID, Kennung, Zeitpunkt, Vorgang, Zeile) SELECT s.JobID, s.StageInhalt, "
      "min(i.Zeitpunkt), s."_sql,
      n,
      ", s.StageZeile FROM StageKopf s JOIN Vorgangsinhalte i ON i.Kennung = s.StageInhalt "
      "WHERE s.StageSperre = 0 AND i.JobID <> s.JobID AND NOT EXISTS (SELECT 1 FROM Vorgangsinhalte o "
      "WHERE o.JobID = s.JobID AND o.Kennung = s.StageInhalt) GROUP BY s.JobID, s.StageInhalt, s."_sql,
      n, ", s.StageZeile"_sql));
  if (known > 0)
    connection_.execute(sql("UPDATE StageGleich SET AndererJob = (SELECT min(i.JobID) FROM Vorgangsinhalte i "
                            "WHERE i.Kennung = StageGleich.Kennung AND i.Zeitpunkt = StageGleich.Zeitpunkt "
                            "AND i.JobID <> StageGleich.JobID)"_sql));
  if (!inFile) return;
  // Of a content that is known, all jobs but those of its keys are in the table already.
  connection_.execute(
      sql("INSERT INTO StageGleich (JobID, Kennung, Vorgang, Zeile, VorigerVorgang) SELECT s.JobID, "
          "s.StageInhalt, s."_sql,
          n, ", s.StageZeile, e.Nummer FROM (SELECT StageInhalt, min("_sql, n,
          ") AS Nummer FROM StageKopf WHERE StageSperre = 0 GROUP BY StageInhalt HAVING count(*) > 1) e "
          "JOIN StageKopf s ON s.StageInhalt = e.StageInhalt WHERE s.StageSperre = 0 AND s."_sql,
          n,
          " > e.Nummer AND NOT EXISTS (SELECT 1 FROM Vorgangsinhalte i WHERE i.Kennung = "
          "e.StageInhalt)"_sql));
}

std::int64_t StagedContents::count() {
  if (!remembered_) return 0;
  return connection_.open(sql("SELECT count(*) FROM StageGleich"_sql))->value(0).integer().value_or(0);
}

void StagedContents::enter(std::int64_t from, std::int64_t to, std::string_view now) {
  if (!remembered_) return;
  Sql insert = ignoresKnown_ ? sql("INSERT OR IGNORE"_sql) : sql("INSERT"_sql);
  insert.append(
      sql(" INTO Vorgangsinhalte (JobID, Kennung, Zeitpunkt) SELECT s.JobID, s.StageInhalt, '"_sql,
          value(now), "' FROM StageKopf s WHERE s.StageSperre = 0 AND s.StageInhalt IS NOT NULL AND s."_sql,
          name(number_), " > "_sql, number(from), " AND s."_sql, name(number_), " <= "_sql, number(to)));
  if (!ignoresKnown_)
    insert.append(sql(" AND NOT EXISTS (SELECT 1 FROM Vorgangsinhalte i WHERE i.JobID = s.JobID)"_sql));
  entered_ += connection_.execute(insert);
}

/// A content that is handed over again under its key keeps its time.
void StagedContents::finish(std::int64_t staged, std::string_view now) {
  if (!remembered_ || entered_ == staged) return;
  connection_.execute(
      sql("UPDATE Vorgangsinhalte SET Kennung = s.StageInhalt, Zeitpunkt = '"_sql, value(now),
          "' FROM StageKopf s WHERE Vorgangsinhalte.JobID = s.JobID AND s.StageSperre = 0 AND "
          "Vorgangsinhalte.Kennung <> s.StageInhalt"_sql));
}

Sql StagedContents::repetitions() const {
  return sql("SELECT g.JobID AS Schluessel, g.Vorgang AS Vorgang, g.Zeile AS Zeile, "
             "coalesce(g.AndererJob, e.JobID) AS Besitzer, g.Zeitpunkt AS Seit, g.VorigerVorgang AS "
             "VorigerVorgang, e.StageZeile AS VorigeZeile FROM StageGleich g LEFT JOIN StageKopf e ON e."_sql,
             name(number_), " = g.VorigerVorgang ORDER BY g.Vorgang"_sql);
}

void StagedContents::appendTo(std::vector<KeyConflict>& conflicts, std::int64_t most) {
  if (remembered_)
    appendConflicts(conflicts, connection_, repetitions(), KeyConflict::Kind::ContentTwice, most);
}

void StagedContents::forEach(const BulkStaging::RepetitionVisitor& visit) {
  if (!remembered_) return;
  const auto rows = connection_.openStream(repetitions());
  for (; !rows->eof(); rows->moveNext()) visit(conflictOf(*rows, KeyConflict::Kind::ContentTwice));
}

Sql StagedContents::stagedRows(bool skipped) {
  Sql rows = sql("SELECT s.JobID AS Schluessel, s.JobType AS Art, s.StageZiel, s.StageSperre"_sql);
  if (skipped) {
    rows.append(sql(", k.JobType, k.Kundennummer, k.Vertragsnummer, k.Bemerkung"_sql));
    rows.append(knowsChanges_
                    ? sql(", (SELECT max(z.Zeitpunkt) FROM Zustandswechsel z WHERE z.JobID = k.JobID "
                          "AND z.JobType = k.JobType) AS Seit"_sql)
                    : sql(", NULL AS Seit"_sql));
    rows.append(remembered_ ? sql(", (SELECT CASE WHEN i.Kennung <> s.StageInhalt THEN 1 ELSE 0 END FROM "
                                  "Vorgangsinhalte i WHERE i.JobID = k.JobID) AS Inhalt"_sql)
                            : sql(", NULL AS Inhalt"_sql));
  }
  rows.append(sql(" FROM StageKopf s"_sql));
  if (skipped)
    rows.append(sql(" LEFT JOIN ImportKopf k ON s.StageSperre = 1 AND k."_sql, name(connection_.rowKey()),
                    " = s.StageZiel"_sql));
  return rows.append(sql(" ORDER BY s."_sql, name(number_)));
}

} // namespace qx::relational
