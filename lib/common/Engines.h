#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "db/DBEngine.h"

namespace tsv {

// How every ledger is opened; its password is that of the database, not of a user.
inline constexpr std::string_view kConnect = "MS Access;PWD=$quietharbor$";

std::vector<std::unique_ptr<db::Driver>> AllDrivers();

// Makes a new, empty ledger that kConnect opens. An existing path is refused with the engine's error.
void CriarBancoDeDados(std::string_view path);

// Removes a ledger with all that it holds, for a program that could not finish what it made. Nobody may have it open.
void RemoverBancoDeDados(std::string_view path);

// Whether the path is the address of a ledger on a server.
bool EstaEmServidor(std::string_view path);

}  // namespace tsv
