// SPDX-License-Identifier: MIT
// Symbol visibility of libpdekit: only what hosts and plug-ins use is exported.
#pragma once

#include <QtCore/qglobal.h>

#if defined(PDEKIT_LIBRARY)
#define PDEKIT_EXPORT Q_DECL_EXPORT
#else
#define PDEKIT_EXPORT Q_DECL_IMPORT
#endif
