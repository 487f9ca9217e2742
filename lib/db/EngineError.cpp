#include "db/EngineError.h"

namespace tsv::db {
namespace {

// The text of a number; a '%' stands where the subject goes, after a colon that goes with it where it may be left out.
std::string_view PatternOf(EngineError error) {
  switch (error) {
    case EngineError::TableExists:
      return "A tabela '%' já existe.";
    case EngineError::NoCurrentRecord:
      return "Não há registro atual.";
    case EngineError::DuplicateKey:
      return "A alteração criaria valores repetidos na chave ou em um índice sem repetição de '%'.";
    case EngineError::FileNotFound:
      return "O arquivo '%' não foi encontrado.";
    case EngineError::ReadOnly:
      return "Não é possível gravar: o banco de dados só permite leitura.";
    case EngineError::WrongPassword:
      return "Senha do banco de dados inválida.";
    case EngineError::NoTransaction:
      return "Não há transação aberta para confirmar ou desfazer.";
    case EngineError::DiskError:
      return "Erro de disco ou de rede ao ler ou gravar o banco de dados.";
    case EngineError::InvalidPath:
      return "O caminho '%' não é válido.";
    case EngineError::CannotOpen:
      return "Não é possível abrir '%': está em uso exclusivo de outro usuário ou falta permissão de acesso.";
    case EngineError::Interrupted:
      return "O servidor interrompeu a operação. Tente de novo.";
    case EngineError::TooFewParameters:
      return "Faltam parâmetros: eram esperados %.";
    case EngineError::DuplicateDestination:
      return "O campo de destino '%' aparece mais de uma vez.";
    case EngineError::CannotExecuteSelect:
      return "Uma consulta de seleção não pode ser executada como ação.";
    case EngineError::NotUpdatable:
      return "A operação exige uma consulta que permita alteração.";
    case EngineError::SyntaxInExpression:
      return "Erro de sintaxe na expressão: %.";
    case EngineError::UnknownTable:
      return "A tabela ou consulta '%' não foi encontrada.";
    case EngineError::AmbiguousField:
      return "O campo '%' existe em mais de uma das tabelas da instrução.";
    case EngineError::UnknownFunction:
      return "A função '%' não existe.";
    case EngineError::OrderAgainstDistinct:
      return "ORDER BY de uma consulta DISTINCT só pode usar o que ela seleciona.";
    case EngineError::NotAggregated:
      return "A consulta agrupa registros, e esta expressão não faz parte do agrupamento: %.";
    case EngineError::UnknownInsertField:
      return "A inclusão nomeia o campo '%', que não existe na tabela.";
    case EngineError::InvalidStatement:
      return "Instrução SQL inválida; eram esperados SELECT, INSERT, UPDATE, DELETE ou CREATE TABLE: %.";
    case EngineError::SyntaxInFrom:
      return "Erro de sintaxe na cláusula FROM: %.";
    case EngineError::SyntaxInInsert:
      return "Erro de sintaxe na instrução INSERT INTO: %.";
    case EngineError::SyntaxInJoin:
      return "Erro de sintaxe na junção de tabelas: %.";
    case EngineError::SyntaxInSelect:
      return "A instrução SELECT tem uma palavra, um nome ou um sinal fora de lugar: %.";
    case EngineError::TextAfterEnd:
      return "Há texto depois do fim da instrução SQL.";
    case EngineError::SyntaxInUpdate:
      return "Erro de sintaxe na instrução UPDATE: %.";
    case EngineError::ConnectionLost:
      return "A conexão com o servidor '%' caiu.";
    case EngineError::ConnectionFailed:
      return "Não foi possível ligar ao servidor do banco de dados: %.";
    case EngineError::TextTooLong:
      return "O texto é mais longo do que o campo '%' permite.";
    case EngineError::RelatedRecords:
      return "O registro de '%' não pode ser excluído nem alterado porque outros registros dependem dele.";
    case EngineError::MissingRelatedRecord:
      return "O registro de '%' não pode ser gravado porque falta um registro relacionado em outra tabela.";
    case EngineError::DatabaseExists:
      return "O arquivo '%' já existe.";
    case EngineError::InvalidOperation:
      return "Operação inválida: %.";
    case EngineError::Unsupported:
      return "A operação não é aceita: %.";
    case EngineError::Locked:
      return "Não foi possível gravar: o banco de dados está bloqueado por outro usuário.";
    case EngineError::ItemNotFound:
      return "O item '%' não existe nesta coleção.";
    case EngineError::UnsupportedJoin:
      return "A expressão de junção não é aceita: %.";
    case EngineError::RequiredField:
      return "O campo '%' exige um valor.";
    case EngineError::ZeroLength:
      return "O campo '%' não aceita um texto vazio.";
    case EngineError::ValidationRule:
      return "O valor não é permitido no campo '%'.";
    case EngineError::UnrecognisedFile:
      return "Formato de banco de dados não reconhecido: '%'.";
    case EngineError::ValueCountDiffers:
      return "O número de valores difere do número de campos de destino.";
    case EngineError::NumericOverflow:
      return "O número não cabe no campo.";
    case EngineError::SubqueryRows:
      return "A subconsulta só pode devolver um registro.";
    case EngineError::ObjectClosed:
      return "O objeto já foi fechado.";
    case EngineError::ConversionError:
      return "Erro na conversão de tipo de dados.";
    case EngineError::CriteriaTypeMismatch:
      return "Os tipos de dados da expressão de critério não combinam.";
  }
  return "Erro do mecanismo de banco de dados.";
}

}  // namespace

std::string TextOf(EngineError error, std::string_view subject) {
  std::string text(PatternOf(error));
  constexpr std::string_view kOptional = ": %";
  const std::size_t optional = text.find(kOptional);
  if (subject.empty() && optional != std::string::npos) return text.erase(optional, kOptional.size());
  const std::size_t place = text.find('%');
  return place == std::string::npos ? text : text.replace(place, 1, subject);
}

void Raise(EngineError error, std::string_view subject) {
  throw Erro(static_cast<std::int32_t>(error), TextOf(error, subject));
}

}  // namespace tsv::db
