# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
