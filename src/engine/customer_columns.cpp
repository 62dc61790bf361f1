#include "engine/customer_columns.h"

#include <array>

namespace qx {
namespace {

// PLZ and Ort follow Land as an addition of ours: an order takes them from the customer.
constexpr std::array writtenColumns{CustomerColumn("Kundennummer"),
                                    CustomerColumn("Suchbegriff"),
                                    CustomerColumn("Bez1"),
                                    CustomerColumn("Bez2"),
                                    CustomerColumn("Bez3"),
                                    CustomerColumn("Strasse"),
                                    CustomerColumn("Land"),
                                    CustomerColumn("PLZ").kept(),
                                    CustomerColumn("Ort").kept(),
                                    CustomerColumn("Telefon"),
                                    CustomerColumn("Telefax"),
                                    CustomerColumn("EMail"),
                                    CustomerColumn("Versandart"),
                                    CustomerColumn("Kundengruppe"),
                                    CustomerColumn("VertreterNr1", "Vertreter1"),
                                    CustomerColumn("VertreterNr2", "Vertreter2"),
                                    CustomerColumn("VertreterNr3", "Vertreter3"),
                                    CustomerColumn("Zahlungsart"),
                                    CustomerColumn("Konto"),
                                    CustomerColumn("KontoNummer"),
                                    CustomerColumn("Bankleitzahl"),
                                    CustomerColumn("KundengruppenShop"),
                                    CustomerColumn("AendStatShop"),
                                    CustomerColumn("VS_KdNr"),
                                    CustomerColumn("VS_AdrNr"),
                                    CustomerColumn("RG_KdNr"),
                                    CustomerColumn("RG_AdrNr"),
                                    CustomerColumn("Hauptkonto"),
                                    CustomerColumn("Preisliste"),
                                    CustomerColumn("Preistyp"),
                                    CustomerColumn("KundeSeit").kept(),
                                    CustomerColumn("KundeVerlorenAm"),
                                    CustomerColumn("GrundVerloren"),
                                    CustomerColumn("GrundVerlorenSchl"),
                                    CustomerColumn("UstIdentNr")};

} // namespace

std::span<const CustomerColumn> writtenCustomerColumns() { return writtenColumns; }

std::optional<Value> writtenBy(const JobFields& job, const CustomerColumn& field, bool isNew) {
  const Value staged = field.column == ColumnName("Bankleitzahl") ? bankCode(job) : job(field.jobField);
  // A null column leaves the stored value unchanged; an empty text clears it.
  if (staged.isNull()) return std::nullopt;
  Value written = emptyToNull(staged);
  // A new row gets the table's defaults for unset columns.
  if (written.isNull() && (isNew || field.keptWhenEmpty)) return std::nullopt;
  return written;
}

} // namespace qx
