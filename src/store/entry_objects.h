// The public objects with which another program stages a job.
#pragma once

#include "model/entry_records.h"
#include "platform/environment.h"

#include <string>

namespace qx {

/// The base of the entry objects. The environment must outlive the object.
///
/// `AddItem` writes the object to its staging table on the shared connection and replaces the row of the same
/// key if there is one. It never raises and shows nothing: a failure is reported to the diagnostics and the
/// row may be missing. `FormatItemCSV` returns the values as one line of job-file fields. Properties are not
/// validated.

/// A customer job, created waiting, with a fresh key and today's date.
class Kunde : public KundeFields {
public:
  explicit Kunde(Environment& environment);
  void AddItem() const noexcept;
  std::string FormatItemCSV() const;

private:
  Environment* environment_;
};

/// A contract job, created waiting, with a fresh key and today's date.
class Vertrag : public VertragFields {
public:
  explicit Vertrag(Environment& environment);
  void AddItem() const noexcept;
  std::string FormatItemCSV() const;

private:
  Environment* environment_;
};

/// An order job header, created waiting, with a fresh key and today's date. It becomes the current order.
class Auftrag : public AuftragFields {
public:
  explicit Auftrag(Environment& environment);
  void AddItem() const noexcept;
  std::string FormatItemCSV() const;

private:
  Environment* environment_;
};

/// The initial flags of a new order position.
struct ReadyFlags {
  bool Lieferbereit = false;
  bool Fakturierbereit = false;

  /// As the shared settings say.
  static ReadyFlags read(Environment& environment);
};

/// An order position with a fresh key; it belongs to the order that was created last.
class AuftragsPos : public AuftragsPosFields {
public:
  explicit AuftragsPos(Environment& environment);
  /// For many positions: with flags read beforehand.
  AuftragsPos(Environment& environment, const ReadyFlags& flags);
  void AddItem() const noexcept;
  std::string FormatItemCSV() const;

private:
  Environment* environment_;
};

/// The date of receipt of a job staged now, "dd.mm.yyyy": the session's date, else the workstation's.
std::string dateOfReceipt(const Environment& environment) noexcept;

/// A unique key; empty, with a diagnostics entry, when the system cannot generate one.
std::string newJobKey(const Environment& environment);

} // namespace qx
