#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/Listed.h"
#include "support/TemporaryFolder.h"

namespace tsv::test {

struct Outcome {
  int code = -1;
  std::string out;
  std::string err;
};

inline std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
  return stream << "exit " << outcome.code << "\n--- out\n" << outcome.out << "--- err\n" << outcome.err;
}

inline void ExpectTold(const std::string& text, const std::string& part) {
  EXPECT_TRUE(text.find(part) != std::string::npos) << "expected: " << part << "\n--- in\n" << text;
}

inline std::string ContentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The built command, driven as a user or a script drives it: a ledger of its own, arguments and files in; texts and
// exit codes out. Commands are a shell's.
class CommandLine : public ::testing::Test {
 protected:
  Outcome Run(const std::string& command) { return Await(Start(command)); }

  // A command that runs beside others writes its output under names of its own.
  Outcome Await(pid_t child, const std::string& suffix = {}) {
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ContentOf(folder_.Path("out" + suffix)),
            ContentOf(folder_.Path("err" + suffix))};
  }

  pid_t Start(const std::string& command, const std::string& suffix = {}, const std::string& input = "/dev/null") {
    const std::string line = "exec '" TSV_TESOVIA "' " + command + " >" + folder_.Path("out" + suffix) + " 2>" +
                             folder_.Path("err" + suffix);
    const pid_t child = fork();
    if (child == 0) {
      setsid();  // no terminal: a password that is asked for fails instead of hanging the test
      dup2(open(input.c_str(), O_RDONLY | O_NOCTTY), STDIN_FILENO);
      for (const char* name : {"TESOVIA_ARQUIVO", "TESOVIA_USUARIO", "TESOVIA_SENHA", "TESOVIA_SENHA_NOVA"}) {
        unsetenv(name);
      }
      for (const auto& [name, value] : environment_) setenv(name.c_str(), value.c_str(), 1);
      execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
      _exit(127);
    }
    return child;
  }

  // The command succeeds; what it told.
  std::string Done(const std::string& command) {
    const Outcome outcome = Run(command);
    EXPECT_EQ(outcome.code, 0) << command << '\n' << outcome;
    return outcome.out;
  }

  // It fails and tells why on standard error; what it told on standard output before.
  std::string Failed(int code, const std::string& reason, const std::string& command) {
    const Outcome outcome = Run(command);
    EXPECT_EQ(outcome.code, code) << command << '\n' << outcome;
    ExpectTold(outcome.err, reason);
    return outcome.out;
  }

  // It fails and says nothing on standard output.
  void Refused(int code, const std::string& reason, const std::string& command) {
    EXPECT_EQ(Failed(code, reason, command), "") << command;
  }

  // Runs what data/commands.txt has under the name: each line an exit code, a text to be told, and a command. A plus
  // after the code: the command shows something before it fails.
  void RunListed(const std::string& name) {
    for (const auto& line : Listed("commands.txt", name)) {
      const std::string& code = line.at(0);
      SCOPED_TRACE(line.at(2));
      if (code == "0") {
        ExpectTold(Done(line[2]), line[1]);
      } else {
        EXPECT_EQ(Failed(std::stoi(code), line[1], line[2]).empty(), !code.ends_with("+"));
      }
    }
  }

  void MakeCompany() { RunListed("a small company"); }

  static std::string Posting(const std::string& date, const std::string& amount, const std::string& account,
                             const std::string& type, const std::string& rest = {}) {
    return "lancar --historico Movimento --data " + date + " --valor " + amount + " --conta " + account +
           " --receita-despesa " + type + " " + rest;
  }

  std::string WriteFile(const std::string& name, const std::string& content) {
    std::ofstream(folder_.Path(name), std::ios::binary) << content;
    return folder_.Path(name);
  }

  nlohmann::json Rows(const std::string& sql) {
    return nlohmann::json::parse(Done("consultar --json \"" + sql + "\""), nullptr, false);
  }
  int Count(const std::string& table) { return Rows("SELECT Count(*) As N FROM " + table)[0]["N"]; }

  // These fields of one entry, as the statement writes them.
  std::string Fields(int id, const std::vector<std::string>& names) {
    nlohmann::json values;
    for (const auto& row : nlohmann::json::parse(Done("extrato --json"), nullptr, false)) {
      if (row["Id"] != id) continue;
      for (const std::string& field : names) values.push_back(row.value(field, nlohmann::json("?")));
    }
    return values.dump();
  }

  // Changes one row of the file behind the ledger's back.
  void Tamper(const std::string& sql) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(environment_["TESOVIA_ARQUIVO"].c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    EXPECT_EQ(sqlite3_changes(database), 1);
    sqlite3_close(database);
  }

  TemporaryFolder folder_;
  std::map<std::string, std::string> environment_ = {
      {"TESOVIA_ARQUIVO", folder_.Path("livro.tesovia")}, {"TESOVIA_USUARIO", "ana"}, {"TESOVIA_SENHA", "segredo"}};
};

}  // namespace tsv::test
