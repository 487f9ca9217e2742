#pragma once

// What the ledger tells its users, as tests expect it of more than one operation or in more than one place.
namespace tsv::test {

inline constexpr const char* kDeletionOfOther =
    "O lançamento não foi localizado ou outro usuário o alterou enquanto você o acessava. A exclusão não se realizou.";
inline constexpr const char* kSettlementOfOther =
    "O lançamento não foi localizado ou outro usuário o alterou enquanto você o acessava. A baixa não se realizou.";
inline constexpr const char* kReversalOfOther =
    "O lançamento não foi localizado ou outro usuário o alterou enquanto você o acessava. O estorno não se realizou.";

inline constexpr const char* kLostSerial =
    "Erro de bloqueio. Informações de controle do sistema estavam em uso por outro usuário. Tente novamente.";
inline constexpr const char* kNoOtherLeg =
    "Erro: faltando informação sobre o lançamento correspondente na operação de transferência.";

inline constexpr const char* kOnlyIncoming =
    "A receita/despesa informada está especificada para aceitar apenas lançamentos de entrada,mas o valor informado é "
    "de saída.";
inline constexpr const char* kOnlyOutgoing =
    "A receita/despesa informada está especificada para aceitar apenas lançamentos de saída, mas o valor informado é "
    "de entrada.";

inline constexpr const char* kNotTransferredFrom =
    "Não foi possível fazer o lançamento de saída. Transferência cancelada.\nPossível causa: a conta foi desativada.";
inline constexpr const char* kNotTransferredTo =
    "Não foi possível fazer o lançamento de entrada. Transferência cancelada.\nPossível causa: a conta foi desativada.";

inline constexpr const char* kDeletionOfReversed =
    "Lançamento estornado somente é excluído na exclusão de conta, receita/despesa, centro de custo/lucro ou "
    "cliente/fornecedor informado nele.";
inline constexpr const char* kDeletionOfReversal =
    "Lançamento que seja estorno de outro somente é excluído na exclusão de conta, receita/despesa, centro de "
    "custo/lucro ou cliente/fornecedor informado nele.";
inline constexpr const char* kNotDeleted =
    "Não foi possível excluir o lançamento selecionado. Uma possível causa é que ele já tenha sido modificado ou "
    "excluído por outro usuário enquanto você o visualizava. Verifique.";
inline constexpr const char* kNoDeletionJournal =
    "Erro na gravação de histórico da exclusão.\nO lançamento não foi excluído.";

inline constexpr const char* kOtherSign = "Valor baixado não pode ser de sinal diferente do valor do lançamento.";
inline constexpr const char* kUnrealisedMoved =
    "Não é permitido alterar a data de lançamento ao baixá-lo como não-realizado.";
inline constexpr const char* kUnrealisedChanged =
    "Não é permitido alterar o valor de lançamento ao baixá-lo como não-realizado.";
inline constexpr const char* kNotTotal =
    "Foi informada baixa total e um valor baixado diferente do valor do lançamento baixado.";
inline constexpr const char* kLegMoved =
    "Lançamento que é parte de uma transferência não pode ser baixado com data diferente da original.";
inline constexpr const char* kPartialLeg = "Lancamento parte de uma transferência não pode receber baixa parcial.";
inline constexpr const char* kTooMuch =
    "Amplitude do valor baixado não pode ser maior que a do valor original do lançamento.";
inline constexpr const char* kNotPartial =
    "Informada baixa parcial, mas valor baixado é igual ao valor original do lançamento.";
inline constexpr const char* kNoDate = "Faltando informar data de realização da previsão para a baixa.";
inline constexpr const char* kBadDate = "Data de realização da previsão baixada é inválida.";
inline constexpr const char* kNotSettled =
    "Não foi possível baixar o lançamento.\nPossível causa: outro usuário alterou lançamento ou a conta de capital ou "
    "de receita/despesa foi desativada.";
inline constexpr const char* kLegNotSettled =
    "A baixa do lançamento não ocorreu. Um motivo pode ser o de outro usuário ter acabado de estorná-lo ou "
    "baixá-lo.\nAtualize sua pesquisa.";

inline constexpr const char* kReversalOfUnrealised =
    "Este lançamento já está baixado como não realizado. Para estorná-lo é preciso remover sua baixa antes.";
inline constexpr const char* kNotReversed =
    "Não foi possível estornar o lançamento selecionado. Uma possível causa é que ele já tenha sido estornado por "
    "outro usuário ou baixado como não realizado. Verifique.";
inline constexpr const char* kReversalDeactivated =
    "Não foi possível incluir o estorno.\nPossível causa: a conta, receita/despesa, centro de custo/lucro ou "
    "cliente/fornecedor foi desativado.";
inline constexpr const char* kNoReversalJournal =
    "Erro na gravação de histórico do estorno.\nO lançamento não foi estornado.";
inline constexpr const char* kNoReversalHistory = "Erro: histórico de estorno não informado.";

}  // namespace tsv::test
