#pragma once

// The one include of the library's clients.
#include "CBaixa.h"
#include "CLancamento.h"
#include "CTransferencia.h"
#include "Collection.h"
#include "Tesovia.h"
#include "common/Errors.h"
#include "common/Session.h"
