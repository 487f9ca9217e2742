#include "EntryChange.h"

#include <CLI/CLI.hpp>

#include "Arguments.h"
#include "Asking.h"
#include "EntryTable.h"

namespace tsv::cli {

void EntryChoice::AddOptions(CLI::App& command) {
  command.add_option("ID", id, "O número do lançamento")->type_name("");
  command
      .add_option("--versao", version, "Só se o lançamento ainda estiver nesta versão (sem a opção, a que é mostrada)")
      ->type_name("NUMERO")
      ->check(NotBlank);
}

void EntryChoice::AddConfirmation(CLI::App& command) {
  command.add_flag("--sim", sure, "Não pergunta antes (sem terminal, nunca pergunta)");
}

void EntryChoice::Complete() {
  id = GivenOrAsked(id, "Número do lançamento", "o ID do lançamento");
  NumberFrom(id);
  if (!version.empty()) NumberFrom(version);
}

EntryChange::EntryChange(Context& context, const EntryChoice& choice)
    : context_(context), tesovia_(context.Login()), sure_(choice.sure) {
  const std::int32_t id = NumberFrom(choice.id);
  shown_ = ShowEntries(tesovia_, "Antes:", WithOtherLeg(tesovia_, id));
  for (const auto& entry : shown_) {
    if (entry->Id() == id) entry_ = entry;
  }
  if (!entry_) throw Failure(kRefused, "O lançamento " + choice.id + " não existe.");
  version_ = choice.version.empty() ? entry_->IdConcorrencia() : NumberFrom(choice.version);
}

void EntryChange::Confirm(const std::string& question, const std::string& otherwise) const {
  if (!sure_ && !cli::Confirm(question)) throw Failure(kRefused, otherwise);
}

void EntryChange::ShowAfter(const std::string& title, const std::vector<std::int32_t>& newIds) {
  std::vector<std::int32_t> ids;
  for (const auto& entry : shown_) ids.push_back(entry->Id());
  ids.insert(ids.end(), newIds.begin(), newIds.end());
  ShowEntries(tesovia_, "\n" + title, ids);
}

std::vector<Classification> EntryChange::Classifications() const {
  std::vector<Classification> classifications;
  for (const auto& entry : shown_) {
    const std::int32_t partner = entry->IdParceiroComl();
    classifications.push_back({entry->CodConta(), entry->CodRecDesp(), entry->CodCentroCusto(),
                               partner == 0 ? std::string() : std::to_string(partner)});
  }
  return classifications;
}

}  // namespace tsv::cli
