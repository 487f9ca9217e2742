#include "db/postgres/SqlBalances.h"

#include <string_view>
#include <utility>

namespace tsv::db::postgres {
namespace {

// Codes of one classification; one that begins with another lies below it. $name, $master, $code and $balance stand for
// its names, $counts for the condition under which an entry counts.
constexpr std::string_view kCodeBalances = R"sql(
-- The codes right below one: those that lie below it but below no other of them.
CREATE FUNCTION tesovia.tsv_abaixo_de_$name(codigo text) RETURNS SETOF text LANGUAGE plpgsql STABLE AS $$
DECLARE
  acima text := tesovia.tsv_dobra(codigo);
  ultimo text;
  atual text;
BEGIN
  FOR atual IN
    SELECT m."Codigo" FROM tesovia."$master" AS m
    WHERE tesovia.tsv_texto(m."Codigo") > rtrim(acima) AND tesovia.tsv_texto(m."Codigo") < acima || chr(1114111)
      AND starts_with(tesovia.tsv_dobra(m."Codigo"), acima)
    ORDER BY tesovia.tsv_texto(m."Codigo")
  LOOP
    CONTINUE WHEN ultimo IS NOT NULL AND starts_with(tesovia.tsv_dobra(atual), ultimo);
    ultimo := tesovia.tsv_dobra(atual);
    RETURN NEXT atual;
  END LOOP;
END $$;

-- The sum of the counting entries between two keys whose code is the given one or lies below it. A few own entries are
-- added; of many, the difference of the balances at both keys is taken.
CREATE FUNCTION tesovia.tsv_soma_de_$name(codigo text, depois text, antes text) RETURNS numeric
LANGUAGE plpgsql STABLE AS $$
DECLARE
  quantos bigint;
  soma numeric;
  abaixo text;
BEGIN
  IF depois = '' THEN
    RETURN tesovia.tsv_saldo_de_$name(codigo, antes);
  END IF;
  SELECT count(*), coalesce(sum(CASE WHEN $counts THEN e."Valor" END), 0) INTO quantos, soma
  FROM (SELECT e."Valor", e."Realizado" FROM tesovia."Lancamentos" AS e
        WHERE tesovia.tsv_texto(e."$code") = tesovia.tsv_texto(codigo) AND e."DataId" > depois AND e."DataId" < antes
        LIMIT 17) AS e;
  IF quantos > 16 THEN
    RETURN tesovia.tsv_saldo_de_$name(codigo, antes) - tesovia.tsv_saldo_de_$name(codigo, depois);
  END IF;
  FOR abaixo IN SELECT tesovia.tsv_abaixo_de_$name(codigo) LOOP
    soma := soma + tesovia.tsv_soma_de_$name(abaixo, depois, antes);
  END LOOP;
  RETURN soma;
END $$;

-- The balance of a code before a key: what its last own entry carries, and what came since on the codes below.
CREATE FUNCTION tesovia.tsv_saldo_de_$name(codigo text, chave text) RETURNS numeric
LANGUAGE plpgsql STABLE AS $$
DECLARE
  ultima text;
  saldo numeric;
  quantos bigint;
  soma numeric;
  abaixo text;
BEGIN
  IF codigo IS NULL OR codigo IN ('', '@@@', '$@#') THEN
    RETURN 0;
  END IF;
  SELECT e."DataId", e."$balance" INTO ultima, saldo FROM tesovia."Lancamentos" AS e
  WHERE tesovia.tsv_texto(e."$code") = tesovia.tsv_texto(codigo) AND e."DataId" < chave
  ORDER BY e."DataId" DESC NULLS LAST LIMIT 1;
  saldo := coalesce(saldo, 0);
  IF ultima IS NOT NULL THEN
    SELECT count(*), coalesce(sum(CASE WHEN $counts THEN e."Valor" END), 0) INTO quantos, soma
    FROM (SELECT e."Valor", e."Realizado" FROM tesovia."$master" AS m
          CROSS JOIN LATERAL (SELECT e."Valor", e."Realizado" FROM tesovia."Lancamentos" AS e
                              WHERE tesovia.tsv_texto(e."$code") = tesovia.tsv_texto(m."Codigo")
                                AND e."DataId" > ultima AND e."DataId" < chave) AS e
          WHERE tesovia.tsv_texto(m."Codigo") > tesovia.tsv_texto(codigo)
            AND tesovia.tsv_texto(m."Codigo") < tesovia.tsv_dobra(codigo) || chr(1114111)
            AND starts_with(tesovia.tsv_dobra(m."Codigo"), tesovia.tsv_dobra(codigo))
          LIMIT 101) AS e;
    IF quantos <= 100 THEN
      RETURN saldo + soma;
    END IF;
  END IF;
  FOR abaixo IN SELECT tesovia.tsv_abaixo_de_$name(codigo) LOOP
    saldo := saldo + tesovia.tsv_soma_de_$name(abaixo, coalesce(ultima, ''), chave);
  END LOOP;
  RETURN saldo;
END $$;
)sql";

// $fast stands for settings that keep every plan, of the functions called too, on the indexes whatever the statistics.
constexpr std::string_view kQueries = R"sql(
CREATE FUNCTION tesovia.tsv_saldo_do_parceiro(parceiro integer, chave text) RETURNS numeric
LANGUAGE plpgsql STABLE AS $$
BEGIN
  IF coalesce(parceiro, 0) = 0 THEN
    RETURN 0;
  END IF;
  RETURN coalesce((SELECT e."SaldoParceiroComl" FROM tesovia."Lancamentos" AS e
                   WHERE e."IdParceiroComl" = parceiro AND e."DataId" < chave
                   ORDER BY e."DataId" DESC NULLS LAST LIMIT 1), 0);
END $$;

CREATE FUNCTION tesovia.tsv_saldo_global(chave text) RETURNS numeric LANGUAGE plpgsql STABLE AS $$
BEGIN
  RETURN coalesce((SELECT e."SaldoGlobal" FROM tesovia."Lancamentos" AS e
                   WHERE e."DataId" < chave ORDER BY e."DataId" DESC NULLS LAST LIMIT 1), 0);
END $$;

CREATE FUNCTION tesovia."ParQrySerialESaldos"(
  "IdParceiro" integer, "CodCCusto" text, "CodCon" text, "CodRecDes" text, "ParData" timestamp,
  OUT "SERIAL" integer, OUT "SaldoParceiro" numeric, OUT "SaldoCCusto" numeric, OUT "SaldoConta" numeric,
  OUT "SaldoRecDesp" numeric, OUT "SaldoGlobal" numeric)
LANGUAGE plpgsql STABLE $fast AS $$
DECLARE
  novo text;
  chave text;
BEGIN
  SELECT s."Serial" INTO "SERIAL" FROM tesovia."Serial" AS s;
  novo := (coalesce("SERIAL", 0)::bigint + 1)::text;
  chave := to_char("ParData", 'YYYYMMDD') || lpad(novo, greatest(9, length(novo)), '0');
  "SaldoConta" := tesovia.tsv_saldo_de_conta("CodCon", chave);
  "SaldoRecDesp" := tesovia.tsv_saldo_de_rec_desp("CodRecDes", chave);
  "SaldoCCusto" := tesovia.tsv_saldo_de_centro_custo("CodCCusto", chave);
  "SaldoParceiro" := tesovia.tsv_saldo_do_parceiro("IdParceiro", chave);
  "SaldoGlobal" := tesovia.tsv_saldo_global(chave);
END $$;

CREATE FUNCTION tesovia.tsv_fica_em(codigo text, acima text) RETURNS boolean LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT coalesce(acima NOT IN ('', '@@@', '$@#') AND starts_with(tesovia.tsv_dobra(codigo), tesovia.tsv_dobra(acima)),
                  FALSE)
$$;

CREATE FUNCTION tesovia."ParQryLastSaldosByDataId"(
  "IdParceiro" integer, "CodCCusto" text, "CodCon" text, "CodRecDes" text, "ParNewDataId" text, "ParOldDataId" text,
  OUT "SaldoConta" numeric, OUT "SaldoRecDesp" numeric, OUT "SaldoCCusto" numeric, OUT "SaldoParceiro" numeric,
  OUT "SaldoGlobal" numeric)
LANGUAGE plpgsql STABLE $fast AS $$
DECLARE
  nova text := coalesce("ParNewDataId", '');
  velha text := coalesce("ParOldDataId", '');
  lancamento record;
BEGIN
  "SaldoConta" := tesovia.tsv_saldo_de_conta("CodCon", nova);
  "SaldoRecDesp" := tesovia.tsv_saldo_de_rec_desp("CodRecDes", nova);
  "SaldoCCusto" := tesovia.tsv_saldo_de_centro_custo("CodCCusto", nova);
  "SaldoParceiro" := tesovia.tsv_saldo_do_parceiro("IdParceiro", nova);
  "SaldoGlobal" := tesovia.tsv_saldo_global(nova);
  FOR lancamento IN
    SELECT e."CodConta", e."CodRecDesp", e."CodCentroCusto", e."IdParceiroComl", e."Valor" FROM tesovia."Lancamentos" AS e
    WHERE e."DataId" = nova AND $counts
    UNION ALL
    SELECT e."CodConta", e."CodRecDesp", e."CodCentroCusto", e."IdParceiroComl", -e."Valor" FROM tesovia."Lancamentos" AS e
    WHERE e."DataId" = velha AND velha COLLATE "C" < nova AND $counts
  LOOP
    IF tesovia.tsv_fica_em(lancamento."CodConta", "CodCon") THEN
      "SaldoConta" := "SaldoConta" + lancamento."Valor";
    END IF;
    IF tesovia.tsv_fica_em(lancamento."CodRecDesp", "CodRecDes") THEN
      "SaldoRecDesp" := "SaldoRecDesp" + lancamento."Valor";
    END IF;
    IF tesovia.tsv_fica_em(lancamento."CodCentroCusto", "CodCCusto") THEN
      "SaldoCCusto" := "SaldoCCusto" + lancamento."Valor";
    END IF;
    IF "IdParceiro" <> 0 AND lancamento."IdParceiroComl" = "IdParceiro" THEN
      "SaldoParceiro" := "SaldoParceiro" + lancamento."Valor";
    END IF;
    "SaldoGlobal" := "SaldoGlobal" + lancamento."Valor";
  END LOOP;
END $$;

-- Takes the one writer's place until the transaction ends, waiting for as many milliseconds at most, and keeps the
-- transaction's plans on the indexes. A client that falls silent inside of it loses the place.
CREATE FUNCTION tesovia.tsv_tomar_a_vez(paciencia integer) RETURNS text LANGUAGE plpgsql AS $$
BEGIN
  PERFORM set_config('lock_timeout', greatest(paciencia, 1)::text, TRUE),
          set_config('idle_in_transaction_session_timeout', '300000', TRUE),
          set_config('plan_cache_mode', 'force_generic_plan', TRUE),
          set_config('enable_seqscan', 'off', TRUE),
          set_config('enable_bitmapscan', 'off', TRUE),
          set_config('jit', 'off', TRUE);
  PERFORM pg_advisory_xact_lock(1414747698, 1);
  RETURN pg_current_xact_id()::text;
END $$;
)sql";

constexpr std::string_view kCounts = R"((e."Realizado" IS NULL OR tesovia.tsv_texto(e."Realizado") <> 'n'))";
constexpr std::string_view kFast =
    "SET plan_cache_mode = force_generic_plan SET enable_seqscan = off SET enable_bitmapscan = off "
    "SET enable_hashjoin = off SET enable_mergejoin = off SET jit = off";

using Marks = std::initializer_list<std::pair<std::string_view, std::string_view>>;

std::string Written(std::string_view pattern, Marks marks) {
  std::string text(pattern);
  for (const auto& [mark, name] : marks) {
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + name.size()))
      text.replace(at, mark.size(), name);
  }
  return text;
}

std::string CodeBalances(std::string_view name, std::string_view master, std::string_view code,
                         std::string_view balance) {
  return Written(kCodeBalances,
                 {{"$name", name}, {"$master", master}, {"$code", code}, {"$balance", balance}, {"$counts", kCounts}});
}

}  // namespace

std::string SqlBalances() {
  return "SET LOCAL check_function_bodies = off;\n" + CodeBalances("conta", "Contas", "CodConta", "SaldoConta") +
         CodeBalances("rec_desp", "TiposMovimentacoes", "CodRecDesp", "SaldoRecDesp") +
         CodeBalances("centro_custo", "CentrosDeCusto", "CodCentroCusto", "SaldoCentroCusto") +
         Written(kQueries, {{"$counts", kCounts}, {"$fast", kFast}});
}

}  // namespace tsv::db::postgres
