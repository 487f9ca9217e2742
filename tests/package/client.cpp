#include <tsvlib2/tsvlib2.h>

#include <iostream>

int main() {
  tsv::Tesovia tesovia;
  try {
    tesovia.AbrirRecordsetTS("SELECT * FROM Contas", tsv::db::dbOpenSnapshot);
  } catch (const tsv::Erro& erro) {
    std::cout << erro.Descricao() << '\n';
    return erro.Numero() == tsv::TS_ERRO_NAO_INICIALIZADO ? 0 : 1;
  }
  return 1;
}
