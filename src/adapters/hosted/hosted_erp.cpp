#include "adapters/hosted/hosted_erp.h"

#include "automation/automation_object.h"

namespace qx {

/// The protocol component of the ERP that is in use when a protocol is opened or created.
class HostedErp::ChosenProtokoll final : public Protokoll {
public:
  explicit ChosenProtokoll(HostedErp& erp) : erp_(erp) {}

  std::string CreateProtokoll(Connection& connection, std::string_view title, std::string_view kind,
                              std::string_view list) override {
    return choose().CreateProtokoll(connection, title, kind, list);
  }
  bool OpenProtokoll(Connection& connection, std::string_view id) override {
    return choose().OpenProtokoll(connection, id);
  }
  void AddNewRecord() override { chosen().AddNewRecord(); }
  void SetField(int kind, int column, std::string_view value) override {
    chosen().SetField(kind, column, value);
  }
  void UpdateRecord() override { chosen().UpdateRecord(); }

private:
  Protokoll& choose() {
    ErpComponents& current = erp_.current();
    if (!component_ || from_ != &current) component_ = current.createProtokoll();
    from_ = &current;
    return *component_;
  }
  Protokoll& chosen() { return component_ ? *component_ : choose(); }

  HostedErp& erp_;
  const ErpComponents* from_ = nullptr;
  std::unique_ptr<Protokoll> component_;
};

ErpComponents& HostedErp::current() {
  const Session* const session = environment_ == nullptr ? nullptr : environment_->session.get();
  const bool ofHost = dynamic_cast<const automation::OfHost*>(session) != nullptr;
  if (standalone_ == nullptr || ofHost) return lateBound_;
  return *standalone_;
}

std::unique_ptr<Protokoll> HostedErp::createProtokoll() {
  if (standalone_ == nullptr) return lateBound_.createProtokoll();
  return std::make_unique<ChosenProtokoll>(*this);
}

} // namespace qx
