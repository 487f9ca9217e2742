#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "types/Erro.h"

namespace tsv::db {

// The legacy engine's numbers, kept by every engine so that clients can go on testing them.
enum class EngineError : std::int32_t {
  TableExists = 3010,
  NoCurrentRecord = 3021,
  DuplicateKey = 3022,
  FileNotFound = 3024,
  ReadOnly = 3027,
  WrongPassword = 3031,
  NoTransaction = 3034,
  DiskError = 3043,
  InvalidPath = 3044,
  CannotOpen = 3051,
  Interrupted = 3059,
  TooFewParameters = 3061,
  DuplicateDestination = 3063,
  CannotExecuteSelect = 3065,
  NotUpdatable = 3073,
  SyntaxInExpression = 3075,
  UnknownTable = 3078,
  AmbiguousField = 3079,
  UnknownFunction = 3085,
  OrderAgainstDistinct = 3093,
  NotAggregated = 3122,
  UnknownInsertField = 3127,
  InvalidStatement = 3129,
  SyntaxInFrom = 3131,
  SyntaxInInsert = 3134,
  SyntaxInJoin = 3135,
  SyntaxInSelect = 3141,
  TextAfterEnd = 3142,
  SyntaxInUpdate = 3144,
  ConnectionLost = 3146,
  ConnectionFailed = 3151,
  TextTooLong = 3163,
  RelatedRecords = 3200,
  MissingRelatedRecord = 3201,
  DatabaseExists = 3204,
  InvalidOperation = 3219,
  Unsupported = 3251,
  Locked = 3260,
  ItemNotFound = 3265,
  UnsupportedJoin = 3296,
  RequiredField = 3314,
  ZeroLength = 3315,
  ValidationRule = 3317,
  UnrecognisedFile = 3343,
  ValueCountDiffers = 3346,
  NumericOverflow = 3349,
  SubqueryRows = 3354,
  ObjectClosed = 3420,
  ConversionError = 3421,
  CriteriaTypeMismatch = 3464,
};

// The Portuguese text of the number, with the subject (a table, field, file or construct) in its place where the text
// has one. Never a statement's text: it may hold a password.
std::string TextOf(EngineError error, std::string_view subject);

[[noreturn]] void Raise(EngineError error, std::string_view subject = {});

}  // namespace tsv::db
