#pragma once

// Resource ids that code and resource script share.

/// Registrar scripts, type "REGISTRY".
#define IDR_CONNECT_SCRIPT 101
#define IDR_PANE_SCRIPT 102
/// Where LoadTypeLib looks first, type "TYPELIB".
#define IDR_TYPE_LIBRARY 1

/// The ribbon's description, type "XML". Pictures of the type RCDATA use the same number space on their own.
#define IDR_RIBBON 201
