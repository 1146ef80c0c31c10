// Nothing: what test programs include is compiled for this file, and used by them all.
//
// SPDX-License-Identifier: MIT
