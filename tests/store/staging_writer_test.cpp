#include "store/staging_writer.h"

#include "support/erp_file.h"

#include <gtest/gtest.h>

using namespace qx;

namespace {

class StagingWriterTest : public ::testing::Test {
protected:
  template <class Record>
  void write(const Record& record) {
    writeStaged(erp.connection(), record);
  }
  Value header(std::string_view jobId, ColumnName column) {
    const auto rows = erp.open("Select * From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql);
    EXPECT_EQ(rows->recordCount(), 1U);
    return rows->value(column);
  }

  ErpFile erp;
};

/// Gives every property a value of its own: texts their name, numbers their place in the table.
template <class Record, std::size_t N>
void fillEveryField(Record& record, const FieldTable<Record, N>& table) {
  for (std::size_t i = 0; i < N; ++i)
    table[i].visit(record, [&](auto& property) {
      using Property = std::remove_reference_t<decltype(property)>;
      if constexpr (std::is_same_v<Property, std::string>)
        property = table[i].name;
      else
        property = static_cast<Property>(i);
    });
}

} // namespace

TEST_F(StagingWriterTest, EveryColumnHoldsItsOwnProperty) {
  KundeFields customer;
  fillEveryField(customer, kundeFields);
  write(customer);
  EXPECT_EQ(header("JobID", "ImportType"), Value(10));
  EXPECT_EQ(header("JobID", "VS_Straße"), Value("VS_Strasse"));
  EXPECT_EQ(header("JobID", "RG_Straße"), Value("RG_Strasse"));
  EXPECT_EQ(header("JobID", "GrundVerlorenSchl"), Value("GrundVerlorenSchl"));

  VertragFields contract;
  fillEveryField(contract, vertragFields);
  contract.JobID = "V";
  write(contract);
  // Not stored: the reason of termination and the four price-deviation properties.
  for (const char* column : {"Kündigungsgrund", "PreisabweichungGrund", "PreisabweichungBemerkung"})
    EXPECT_TRUE(header("V", ColumnName(std::string_view(column))).isNull()) << column;
  EXPECT_EQ(header("V", "IndFild4"), Value("IndFild4"));

  AuftragFields order;
  fillEveryField(order, auftragFields);
  order.JobID = "A";
  write(order);
  EXPECT_TRUE(header("A", "NeukundeJN").isNull());
  EXPECT_TRUE(header("A", "IndFild4").isNull());
  EXPECT_EQ(header("A", "IndFild3"), Value("IndFild3"));
}

TEST_F(StagingWriterTest, WritingAgainReplacesTheValuesAndTouchesNoOtherColumn) {
  KundeFields job;
  job.JobID = "K1";
  job.JobType = 10;
  job.Bez1 = "Alt";
  job.Ort = "Bonn";
  write(job);
  erp.execute("Update ImportKopf Set ProcessWarning = 1, Vertragstext = 'bleibt', Zustand = 'A'"_sql);
  job.Bez1 = "Neu";
  job.Ort = "";
  write(job);
  EXPECT_EQ(header("K1", "Bez1"), Value("Neu"));
  EXPECT_EQ(header("K1", "Ort"), Value(""));
  EXPECT_EQ(header("K1", "ProcessWarning"), Value(1));
  EXPECT_EQ(header("K1", "Vertragstext"), Value("bleibt"));
}

TEST_F(StagingWriterTest, AnOpenContractEndIsNull) {
  VertragFields job;
  job.JobID = "V1";
  for (const char* open : {"", "999999"}) {
    job.Vertragsende = open;
    write(job);
    EXPECT_TRUE(header("V1", "Vertragsende").isNull()) << open;
  }
  for (const char* end : {"31.12.2027", " 999999", "unbefristet"}) {
    job.Vertragsende = end;
    write(job);
    EXPECT_EQ(header("V1", "Vertragsende"), Value(end));
  }
}

TEST_F(StagingWriterTest, WhateverATextHoldsIsStoredAsData) {
  const std::string texts[] = {"O'Brien'; DROP TABLE ImportKopf; --",
                               "\"Müller\" & Söhne ß",
                               "😀 naïve",
                               std::string(10000, 'x'),
                               "a;b\r\nc\td%_[]",
                               "?1 :a @b $c"};
  for (const std::string& text : texts) {
    KundeFields job;
    job.JobID = "K1";
    job.Kundennummer = job.Bemerkung = text;
    write(job);
    EXPECT_EQ(header("K1", "Bemerkung"), Value(text));
    EXPECT_EQ(header("K1", "Kundennummer"), Value(text));
  }
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 1);
}

TEST_F(StagingWriterTest, PositionsComeBackInTheOrderOfTheirNumbers) {
  for (const int number : {10, 2, 1}) {
    AuftragsPosFields position;
    position.JobID = "A1";
    position.ChildID = "C" + std::to_string(number);
    position.Positionsnummer = number;
    position.Lieferbereit = number == 2;
    write(position);
  }
  const auto rows =
      erp.open("SELECT *, Cast(Positionsnummer as int) as intPos From ImportPos where JobID = '"_sql,
               value("A1"), "' Order By intPos"_sql);
  std::string order;
  for (; !rows->eof(); rows->moveNext())
    order += rows->text("ChildID") + rows->value("Lieferbereit").text() + " ";
  EXPECT_EQ(order, "C10 C21 C100 ");
}

TEST_F(StagingWriterTest, AVersionOnePositionKeepsItsContractColumns) {
  ImportJobSubItem position;
  position.JobID = "V1";
  position.ChildID = "C1";
  position.JobType = 1001;
  position.Vertragsart = "W";
  position.Vertragsende = "31.12.2027";
  write(position);
  EXPECT_EQ(erp.count("Select Count(*) From ImportPos Where JobType = 1001 And Vertragsart = 'W' And "
                      "Vertragsende = '31.12.2027' And Positionsnummer = '0'"_sql),
            1);
}

TEST_F(StagingWriterTest, AFailureIsRaisedAndLeavesNothing) {
  erp.execute("Create Trigger Verbot Before Insert On ImportKopf Begin "
              "Select Raise(Abort, 'nicht erlaubt'); End"_sql);
  KundeFields job;
  job.JobID = "K1";
  EXPECT_THROW(write(job), StatementError);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 0);
}
