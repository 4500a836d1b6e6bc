// SPDX-License-Identifier: MIT
// The device's library of common dialogs, for the desktop: it holds nothing but the desktop's own under the
// device's names (commdlg.def).
