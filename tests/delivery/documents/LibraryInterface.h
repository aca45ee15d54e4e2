#pragma once

#include "RolesDocument.h"

/// What the library has, as docs/roles.md ought to say it: from the meta-objects and from the field
/// tables, which tst_every_item compares with the classes.
InterfaceLines libraryInterface();
