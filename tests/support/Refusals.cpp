#include "support/Refusals.h"

#include "types/Conversions.h"

namespace tsv::test {

namespace {

constexpr const char* kBegin = "BeginTrans";

void ExpectRefused(const Company& company, const Attempt& attempt, const Erro& refusal) {
  const auto host = std::make_shared<RecordingHost>();
  const auto recorder = std::make_shared<Recorder>();
  CurrentSession().host = host;
  Tesovia tesovia;
  tesovia.InicializarTS(company.Path(), "ana", "segredo");
  if (!attempt.before.empty()) company.Execute(attempt.before);

  std::string expected = ContentsOf(company);
  int left = attempt.meanwhile.happens ? attempt.meanwhile.time : 0;
  recorder->before = [&](std::string_view text) {
    if (left == 0 || !text.starts_with(attempt.meanwhile.at) || --left > 0) return;
    attempt.meanwhile.happens(company);
    expected = ContentsOf(company);  // with another user's change; none of a transaction that is still open
  };
  CurrentSession().BancoDeDados->Observe(recorder);
  ExpectErro(ErrorOf([&] { attempt.act(tesovia); }), refusal.Numero(), refusal.Descricao(), refusal.Origem());
  CurrentSession().BancoDeDados->Observe(nullptr);
  EXPECT_EQ(left, 0) << "nothing happened meanwhile";
  EXPECT_EQ(ContentsOf(company), expected);
  EXPECT_TRUE(host->events.empty() || host->events.back() == "normal");
}

}  // namespace

Meanwhile Others(std::string sql) {
  return {kBegin, [sql = std::move(sql)](const Company& company) { company.Execute(sql); }};
}

Meanwhile OthersDelete(std::int32_t id) {
  return {kBegin, [id](const Company& company) {
            OnAnotherThread([&] {
              Tesovia other;
              other.InicializarTS(company.Path(), "ana", "segredo");
              other.ExcluirLancamentoTS(id, 0);
            });
          }};
}

Meanwhile Within(std::string at, std::string sql, int time) {
  const auto happens = [sql = std::move(sql)](const Company&) {
    CurrentSession().BancoDeDados->Execute(sql);
    ASSERT_GT(CurrentSession().BancoDeDados->RecordsAffected(), 0) << sql;
  };
  return {std::move(at), happens, time};
}

Meanwhile DiskFails(std::string at, int time) {
  return {std::move(at), [](const Company&) { throw Erro(3043, "disco"); }, time};
}

Refusals::Refusals(const Action& given) {
  OnAnotherThread([&] {
    Tesovia tesovia;
    tesovia.InicializarTS(company_.Path(), "ana", "segredo");
    given(tesovia);
  });
  company_.Keep();
}

void Refusals::Expect(std::int32_t number, const char* origin, const std::string& description,
                      const std::vector<Attempt>& attempts) const {
  const Erro refusal(number, description, origin);
  for (const Attempt& attempt : attempts) {
    SCOPED_TRACE(::testing::Message() << "attempt " << &attempt - attempts.data() << " " << attempt.before
                                      << attempt.meanwhile.at << ", to be refused with " << refusal);
    company_.Restore();
    OnAnotherThread([&] { ExpectRefused(company_, attempt, refusal); });
  }
}

std::string ContentsOf(const Company& company) {
  const auto database = company.Open();
  std::vector<std::string> lines;  // sorted: a server has no order of its own
  for (const std::string table : {"Lancamentos", "HistoricosDeLancamentos", "Transferencias", "Serial"}) {
    for (const Row& row : RowsOf(*database, table)) {
      std::string& line = lines.emplace_back(table);
      for (const auto& [column, value] : row) line += "|" + (IsNull(value) ? std::string("NULL") : ToText(value));
    }
  }
  std::sort(lines.begin(), lines.end());
  std::string contents;
  for (const std::string& line : lines) contents += line + "\n";
  return contents;
}

}  // namespace tsv::test
