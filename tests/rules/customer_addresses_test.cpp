#include "rules/customer_addresses.h"

#include "support/erp_file.h"

#include <gtest/gtest.h>

using namespace qx;

namespace {

class CustomerAddressesTest : public ::testing::Test {
protected:
  void SetUp() override {
    erp.execute("Insert Into Kundenstamm (Kundennummer, Bez1, Bez2, Strasse, PLZ, Ort) Values "
                "('100','Müller','','Hauptweg 1','20095','Hamburg')"_sql);
  }

  ErpFile erp;
  CustomerAddresses addresses{erp.environment};
};

} // namespace

TEST_F(CustomerAddressesTest, AnEmptyNumberIsTheMainAddress) {
  EXPECT_TRUE(addresses.KundeAngelegt("100"));
  EXPECT_FALSE(addresses.KundeAngelegt("100", "1"));
  EXPECT_FALSE(addresses.KundeAngelegt("101"));
  EXPECT_EQ(addresses.GetAdresse("100"), "Müller\r\nHauptweg 1\r\n20095\r\nHamburg");
  EXPECT_EQ(addresses.GetAdresse("100", "1"), "");
}

TEST_F(CustomerAddressesTest, ANumberedAddressIsAddedOnceAndNeverOverwritten) {
  const Adresse first{"Lager", "", "", "Kai 3", "DE", "18055", "Rostock"};
  const Adresse second{"Büro", "", "", "", "", "", ""};
  EXPECT_TRUE(addresses.AddAdressDaten("100", "A", first));
  EXPECT_FALSE(addresses.AddAdressDaten("100", "a", second));
  EXPECT_TRUE(addresses.AddAdressDaten("100", "B", second));
  EXPECT_EQ(addresses.GetAdressDaten("100", "A"), first);
  EXPECT_TRUE(addresses.KundeAngelegt("100", "B"));
  EXPECT_EQ(erp.count("Select Count(*) From Adressenstamm Where Ort is null And Bez1 = 'Büro'"_sql), 1);
}

TEST_F(CustomerAddressesTest, AnAddressThatTheDatabaseLeavesOutIsAFailure) {
  erp.execute("Create Trigger Nicht Before Insert On Adressenstamm Begin Select Raise(Ignore); End"_sql);
  EXPECT_THROW(addresses.AddAdressDaten("100", "A", {"Lager", "", "", "", "", "", ""}), NotInserted);
}

TEST_F(CustomerAddressesTest, TheMainAddressIsNeverAdded) {
  EXPECT_FALSE(addresses.AddAdressDaten("100", "", {"Lager", "", "", "", "", "", ""}));
  EXPECT_EQ(erp.count("Select Count(*) From Adressenstamm"_sql), 0);
}
