// SPDX-License-Identifier: Apache-2.0
// A library needs a source; what counts is the header that is precompiled with it.
