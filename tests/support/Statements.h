#pragma once

#include <string>
#include <vector>

#include "support/Company.h"
#include "support/Listed.h"

namespace tsv::test {

// What data/statements.txt has under the scenario's name: one statement a line, closed by a bar so that its last blank
// shows.
inline std::vector<std::string> Statements(const std::string& scenario) {
  std::vector<std::string> statements;
  for (const auto& line : Listed("statements.txt", scenario)) {
    statements.push_back(line.at(0).substr(0, line[0].size() - 1));
  }
  return statements;
}

inline void ExpectStatements(const Recorder& recorder, const std::string& scenario) {
  const std::vector<std::string> ran = recorder.Texts();
  const std::vector<std::string> expected = Statements(scenario);
  for (std::size_t i = 0; i < std::min(ran.size(), expected.size()); ++i) ASSERT_EQ(ran[i], expected[i]) << scenario;
  EXPECT_EQ(ran.size(), expected.size()) << scenario;
}

}  // namespace tsv::test
