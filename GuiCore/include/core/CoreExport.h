#pragma once

#include <QtCore/qglobal.h>

/// Marks what libRIVO_ARM_QtLib.so offers to other shared objects.
#define RIVO_CORE_EXPORT Q_DECL_EXPORT
