#pragma once

#include <CLI/App.hpp>

#include "Context.h"

// Each command adds itself with its options and, when it is the one given, sets the context's action.
namespace tsv::cli {

void AddCriar(CLI::App& app, Context& context);
void AddCadastrar(CLI::App& app, Context& context);
void AddAtivarDesativar(CLI::App& app, Context& context);
void AddLancar(CLI::App& app, Context& context);
void AddTransferir(CLI::App& app, Context& context);
void AddBaixar(CLI::App& app, Context& context);
void AddEstornar(CLI::App& app, Context& context);
void AddExcluir(CLI::App& app, Context& context);
void AddImportar(CLI::App& app, Context& context);
void AddExtrato(CLI::App& app, Context& context);
void AddDiario(CLI::App& app, Context& context);
void AddVerificar(CLI::App& app, Context& context);
void AddConsultar(CLI::App& app, Context& context);
void AddCopiar(CLI::App& app, Context& context);

}  // namespace tsv::cli
