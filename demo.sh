#!/bin/sh
# Builds the command and keeps the books of a small bakery with it, from an empty ledger to a checked statement.
# Installs the Debian packages that are missing.
set -eu
cd "$(dirname "$0")"
. cmake/packages.sh

need build-essential cmake ninja-build pkg-config libsqlite3-dev libcli11-dev nlohmann-json3-dev libcsv-dev

say "Building the command tesovia"
run cmake -S . -B build/demo -G Ninja -D CMAKE_BUILD_TYPE=Release -D TSV_BUILD_TESTS=OFF -D TSV_BUILD_COM=OFF
run cmake --build build/demo --target tesovia

PATH="$PWD/build/demo/cli:$PATH"
export TESOVIA_ARQUIVO=build/demo/padaria.tesovia TESOVIA_USUARIO=ana
export TESOVIA_SENHA=segredo # a real one is asked for at the terminal, unseen
rm -f "$TESOVIA_ARQUIVO" "$TESOVIA_ARQUIVO-wal" "$TESOVIA_ARQUIVO-shm"

say "A new ledger: accounts, types, cost centres, partners"
run tesovia criar --nome "Ana Souza"
run tesovia cadastrar conta 1 "CAIXA"
run tesovia cadastrar conta 2 "BANCOS"
run tesovia cadastrar conta 2.1 "BANCO DO LITORAL"
run tesovia cadastrar conta 2.2 "BANCO DA SERRA"
run tesovia cadastrar receita-despesa 1 "RECEITAS" --tipo entrada
run tesovia cadastrar receita-despesa 1.1 "VENDAS" --tipo entrada
run tesovia cadastrar receita-despesa 1.2 "ENCOMENDAS" --tipo entrada
run tesovia cadastrar receita-despesa 2 "DESPESAS" --tipo saida
run tesovia cadastrar receita-despesa 2.1 "MATÉRIA-PRIMA" --tipo saida
run tesovia cadastrar receita-despesa 2.2 "SALÁRIOS" --tipo saida
run tesovia cadastrar receita-despesa 2.3 "ALUGUEL" --tipo saida
run tesovia cadastrar receita-despesa 2.4 "ENERGIA" --tipo saida
run tesovia cadastrar receita-despesa 2.5 "MANUTENÇÃO" --tipo saida
run tesovia cadastrar receita-despesa 3 "CAPITAL"
run tesovia cadastrar centro LOJA "LOJA"
run tesovia cadastrar centro PROD "PRODUÇÃO"
run tesovia cadastrar parceiro "MOINHO AZUL"
run tesovia cadastrar parceiro "LATICÍNIOS DO VALE"
run tesovia cadastrar parceiro "IMOBILIÁRIA CENTRAL"
run tesovia cadastrar parceiro "SALÃO DE FESTAS ALEGRIA" --filial "CENTRO"
run tesovia cadastrar parceiro "COMPANHIA DE ENERGIA"

say "June's entries from a file; a second time posts none twice"
run tesovia importar demo/lancamentos.csv
run tesovia importar demo/lancamentos.csv

say "A posting that the ledger refuses: income on an expense type"
run tesovia lancar --data 30/06/2026 --valor 100,00 --historico "Engano" --conta 1 --receita-despesa 2.4 || true

say "The bank accounts before a back-dated entry"
run tesovia extrato --conta 2 --de 08/06/2026 --ate 15/06/2026

say "An entry of 9 June, found only now: the later balances move, the earlier ones stay"
run tesovia lancar --data 09/06/2026 --valor -75,00 --historico "Tarifa do banco" --conta 2.1 --receita-despesa 2
run tesovia extrato --conta 2 --de 08/06/2026 --ate 15/06/2026

say "The middle of June as it was planned"
run tesovia extrato --de 08/06/2026 --ate 19/06/2026

say "Money moved from the till to the bank: two entries, one transfer"
run tesovia transferir --de 1 --para 2.1 --valor 4.000,00 --data 13/06/2026 --historico "Depósito do caixa"

say "The wedding cake is paid later, and not in full"
run tesovia baixar 12 --parcial --valor 500,00 --data 19/06/2026

say "The electricity bill is paid in full, a day late"
run tesovia baixar 14 --total --data 10/06/2026

say "An order was called off"
run tesovia baixar 20 --nao-realizado

say "Rui, who looked at that order before, settles what he saw: the ledger refuses"
TESOVIA_SENHA_NOVA=$TESOVIA_SENHA
export TESOVIA_SENHA_NOVA
run tesovia cadastrar usuario rui "Rui Lima"
run tesovia -u rui baixar 20 --total --data 12/06/2026 --versao 0 || true

say "A delivery went back: its entry is reversed"
run tesovia -u rui estornar 28 --historico "Farinha devolvida"

say "A transfer typed by mistake is deleted, both entries"
run tesovia transferir --de 2.1 --para 2.2 --valor 10,00 --data 15/06/2026 --historico "Engano"
run tesovia excluir 45

say "The middle of June as it happened"
run tesovia extrato --de 08/06/2026 --ate 19/06/2026

say "Who did what with the order that was called off"
run tesovia diario --lancamento 20

say "All balances of all entries, recomputed from the amounts"
run tesovia verificar
