// The comparison that all tests of this program rely on notices what it is there for.
#include "described_outputs.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(DescribedOutputs, WhatNoSchemaHasFailsTheTest) {
  expectDescribed({"--db", "list", "release", "A", "--json"}, R"({"released":1,"jobs":["A"]})");
  expectDescribed({"lst", "--json"}, R"({"error":"e","file":null,"line":null,"field":null})");
  struct Wrong {
    std::vector<std::string> arguments;
    std::string_view output;
    std::string noticed;
  };
  const std::vector<Wrong> wrong{
      {{"release", "--json"}, R"({"released":1,"jobs":["A"],"neu":1})", "additionalProperties"},
      {{"release", "--json"}, R"({"released":1})", "required"},
      {{"list", "--json"}, R"({"jobs":[{"JobID":1}]})", "type"},
      {{"list", "--json=lines"}, "{\"JobID\":\"A\"}\n{\"Neu\":1}\n", "additionalProperties"},
      {{"show", "A", "--json"}, R"({"state":"offen"})", "'show'"},
      {{"protocol", "purge", "--json"}, R"({"protocol":null,"protocols":[],"lines":[]})", "'protocol-purge'"},
      {{"delete", "A", "--json"}, R"({"deleted":1,"wouldDelete":1})", "oneOf"},
      {{"stage", "-", "--json"}, R"({"error":"e"})", "required"},
      {{"neu", "--json"}, R"({"a":1})", "no schema"}};
  for (const Wrong& each : wrong)
    EXPECT_NONFATAL_FAILURE(expectDescribed(each.arguments, each.output), each.noticed);
}

} // namespace
} // namespace qx
