#pragma once

// The one include of the library's clients.
#include "CLancamento.h"
#include "Tesovia.h"
#include "common/Errors.h"
#include "common/Session.h"
