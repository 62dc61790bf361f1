#include "rules/stock.h"

#include "support/erp_file.h"

#include <gtest/gtest.h>

#include <limits>

#include <stdexcept>

using namespace qx;

namespace {

class OneFactor final : public Umrechnungen {
public:
  double GetUmrechnung(const UnitConversion& conversion) override {
    asked = std::string(conversion.article) + " " + std::string(conversion.fromRole) + " " +
            std::string(conversion.fromUnit) + " " + std::string(conversion.toRole) + " " +
            std::string(conversion.toUnit);
    return factor;
  }
  double factor = 12;
  std::string asked;
};

/// A session that does nothing but convert units.
class ConvertingSession final : public Session {
public:
  explicit ConvertingSession(OneFactor& units) : units_(units) {}
  void Connect(std::string_view, std::string_view) override {}
  void Disconnect() override {}
  bool NotConnected() override { return false; }
  std::int32_t ErrorCode() override { return 0; }
  void ShowError(std::string_view) override {}
  std::shared_ptr<Connection> connection() override { return nullptr; }
  std::string PersonalNr() override { return {}; }
  std::string SessionID() override { return {}; }
  std::string UserName() override { return {}; }
  std::string GetSetting(std::string_view, std::string_view, std::optional<std::string_view>) override {
    return {};
  }
  void SaveSetting(std::string_view, std::string_view, std::string_view) override {}
  Date GetSessionDate() override { return {}; }
  std::int16_t GetBuchungskreis() override { return 1; }
  std::optional<std::int32_t> GetBelegnummer(std::string_view, std::int16_t) override { return std::nullopt; }
  qx::Umrechnungen& Umrechnungen() override { return units_; }

private:
  OneFactor& units_;
};

class StockTest : public ::testing::Test {
protected:
  void SetUp() override {
    erp.environment.session = std::make_shared<ConvertingSession>(units);
    run(sql("Insert Into Artikelstamm (Artikelnummer, Mengeneinheit) Values ('A','Stk'), ('B','Stk')"_sql));
    run(sql("Insert Into Artikellager (Artikelnummer, Lagernummer, Lagerbestand, MitBestand) Values "
            "('A','1',5,1), ('A','2',19,0), ('B','1',7,0), ('B','2',7,1)"_sql));
    run(sql("Insert Into MengeneinheitenAltern (Alternativ, Mengeneinheit) Values ('pce','Stk')"_sql));
  }
  void run(const Sql& statement) { erp.connection().execute(statement); }

  ErpFile erp;
  OneFactor units;
  Stock stock{erp.environment};
};

} // namespace

TEST_F(StockTest, IsTheSumOfAllStoresAndTheFirstOneDecidesWhetherItIsKept) {
  const auto kept = stock.GetLagerbestand("A", "Karton");
  EXPECT_EQ(kept.stock, 24);
  EXPECT_EQ(kept.unit, "Stk");
  for (const char* article : {"B", "unknown"}) {
    const auto none = stock.GetLagerbestand(article, "Karton", true);
    EXPECT_EQ(none.stock, 0);
    EXPECT_EQ(none.unit, "QXNone");
  }
}

TEST_F(StockTest, IsDividedByTheFactorOfTheWantedUnit) {
  const auto converted = stock.GetLagerbestand("A", "Karton", true);
  EXPECT_EQ(converted.stock, 2);
  EXPECT_EQ(converted.unit, "Karton");
  EXPECT_EQ(units.asked, "A ME Lager Stk ME Verkauf Karton");
}

TEST_F(StockTest, AFactorThatIsNoUsableNumberRaisesInsteadOfPromisingAnInfiniteStock) {
  for (const double factor : {0.0, -12.0, 1e-320, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()}) {
    units.factor = factor;
    EXPECT_THROW(stock.GetLagerbestand("A", "Karton", true), std::domain_error) << factor;
  }
  EXPECT_NO_THROW(stock.GetLagerbestand("A", "Karton"));
}

TEST_F(StockTest, AlternativeSpellingsMapToTheirUnitAndOthersStay) {
  EXPECT_EQ(stock.MengeneinheitAlternativ("PCE"), "Stk");
  EXPECT_EQ(stock.MengeneinheitAlternativ("Fass"), "Fass");
  EXPECT_EQ(stock.MengeneinheitAlternativ(""), "");
  run(sql("Drop Table Mengeneinheiten"_sql));
  EXPECT_EQ(stock.MengeneinheitAlternativ("PCE"), "Stk");
  EXPECT_THROW(stock.MengeneinheitAlternativ("Fass"), DatabaseError);
}
