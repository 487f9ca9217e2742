#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iomanip>
#include <iostream>
#include <span>

#include "Commands.h"
#include "Refusals.h"
#include "Secrets.h"

namespace {

using namespace tsv;
using namespace tsv::cli;

constexpr const char* kOptions = "Opções";

// Before anything is added: what is added later takes these over.
void SpeakPortuguese(CLI::App& app) {
  app.option_defaults()->group(kOptions);
  app.set_help_flag("-h,--ajuda,--help", "Mostra esta ajuda")->group(kOptions);
  auto formatter = std::make_shared<CLI::Formatter>();
  formatter->label("Usage", "Uso");
  formatter->label("OPTIONS", "OPÇÕES");
  formatter->label("SUBCOMMAND", "COMANDO");
  formatter->label("Positionals", "Argumentos");
  formatter->label("REQUIRED", "(exigido)");
  formatter->label("Env", "ou variável");
  formatter->label("Excludes", "sem");
  formatter->column_width(34);
  app.formatter(formatter);
}

void NameGroupOfCommands(CLI::App& app) {
  for (CLI::App* command : app.get_subcommands({})) {
    command->group("Comandos");
    command->get_help_ptr()->group(kOptions);
    NameGroupOfCommands(*command);
  }
}

// The parser's own messages are English; each is told by its kind, with the names that it holds.
std::string UsageText(const CLI::ParseError& error, const CLI::App& app) {
  const std::string text = error.what();
  const std::string kind = error.get_name();
  const auto upTo = [&text](const char* end) { return text.substr(0, text.find(end)); };
  const auto from = [&text](const char* begin) {
    const std::size_t at = text.find(begin);
    return at == std::string::npos ? text : text.substr(at + std::string(begin).size());
  };
  if (text.starts_with("A subcommand")) {
    const auto unknown = app.remaining(true);
    return unknown.empty() ? "Faltando informar o comando." : "Não conheço o comando '" + unknown.front() + "'.";
  }
  if (kind == "RequiredError") return "Faltando informar " + upTo(" is req") + ".";
  if (text.starts_with("The following arg")) return "Não entendi " + from("expected: ") + ".";
  if (kind == "ExcludesError") return upTo(" excludes ") + " não vale com " + from(" excludes ") + ".";
  if (text.find(": At most") != std::string::npos) return upTo(":") + " foi informado mais de uma vez.";
  if (kind == "ArgumentMismatch") return "Faltando o valor de " + upTo(":") + ".";
  if (kind == "ValidationError") return "Valor inválido em " + upTo(":") + ".";
  return "Argumentos inválidos: " + text;
}

ExitCode Report(const Erro& erro, const Context& context, const ConsoleHost& host) {
  // An error without a description was already told in a message box.
  const bool isTold = erro.Descricao().empty() && !host.LastBox().empty();
  if (!isTold) std::cerr << Told(ReasonOf(erro, host)) << '\n';
  if (context.detalhes) {
    std::cerr << "Número: " << erro.Numero();
    if (erro.Numero() < 0) {
      std::cerr << " (0x" << std::hex << std::uppercase << static_cast<std::uint32_t>(erro.Numero()) << std::dec << ")";
    }
    std::cerr << "; origem: '" << erro.Origem() << "'\n";
  }
  return IsRefusal(erro) ? kRefused : kFailed;
}

ExitCode RunAction(Context& context) {
  try {
    RememberWord(context.arquivo);
    context.Begin();
    const ExitCode code = context.action();
    std::cout.flush();
    if (!std::cout) throw Failure(kFailed, "Não foi possível escrever a saída.");
    return code;
  } catch (const Failure& failure) {
    std::cerr << Told(failure.what()) << '\n';
    return failure.Code();
  } catch (const Erro& erro) {
    return Report(erro, context, context.Host());
  } catch (const std::exception& unexpected) {
    std::cerr << "Erro inesperado: " << Told(unexpected.what()) << '\n';
    return kFailed;
  }
}

ExitCode Run(Context& context) {
  const ExitCode code = RunAction(context);
  if (context.done && code != kDone) std::cerr << "O que foi pedido está gravado; não o repita.\n";
  return code;
}

void RememberWords(std::span<char*> arguments) {
  for (const char* argument : arguments) RememberWord(argument);
  if (const char* ledger = std::getenv("TESOVIA_ARQUIVO")) RememberWord(ledger);
}

}  // namespace

int main(int argc, char** argv) try {
  RememberWords({argv, static_cast<std::size_t>(argc)});
  Context context;
  CLI::App app("tesovia: um livro de fluxo de caixa com saldos sempre conferidos", "tesovia");
  SpeakPortuguese(app);
  app.require_subcommand(1);
  app.fallthrough();
  app.add_option("-a,--arquivo", context.arquivo, "O livro: um arquivo ou um endereço postgresql://")
      ->envname("TESOVIA_ARQUIVO")
      ->type_name("ARQUIVO");
  app.add_option("-u,--usuario", context.usuario, "Login do usuário; a senha é perguntada ou vem de TESOVIA_SENHA")
      ->envname("TESOVIA_USUARIO")
      ->type_name("LOGIN");
  app.add_option("--rastrear", context.rastrear, "Escreve neste arquivo os comandos enviados ao banco de dados")
      ->type_name("ARQUIVO");
  app.add_flag("--detalhes", context.detalhes, "Mostra número e origem dos erros");
  AddCriar(app, context);
  AddCadastrar(app, context);
  AddAtivarDesativar(app, context);
  AddLancar(app, context);
  AddTransferir(app, context);
  AddBaixar(app, context);
  AddEstornar(app, context);
  AddExcluir(app, context);
  AddImportar(app, context);
  AddExtrato(app, context);
  AddDiario(app, context);
  AddVerificar(app, context);
  AddConsultar(app, context);
  AddCopiar(app, context);
  NameGroupOfCommands(app);

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    std::cerr << Told(UsageText(error, app)) << "\nUse --ajuda depois do comando para ver suas opções.\n";
    return kUsage;
  }
  return Run(context);
} catch (...) {
  return tsv::cli::kFailed;  // not even the options could be set up
}
