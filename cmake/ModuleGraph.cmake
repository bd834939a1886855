# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
#
# Who may see whom. sorvane_module() refuses, at configure time, any edge that is not in this
# table; a module exports only its include/ folder, so an include without an edge does not compile.
set(SORVANE_EDGES_PlatformSupport   "")
set(SORVANE_EDGES_AudioIO         PlatformSupport)
set(SORVANE_EDGES_MLProgram       PlatformSupport)
set(SORVANE_EDGES_ModelStore      PlatformSupport)
set(SORVANE_EDGES_ModelCatalog    ModelStore PlatformSupport)
set(SORVANE_EDGES_Ostrel          MLProgram AudioIO ModelStore ModelCatalog PlatformSupport)
set(SORVANE_EDGES_Regex           PlatformSupport)
set(SORVANE_EDGES_DesktopServices PlatformSupport)
set(SORVANE_EDGES_DesktopFakes    DesktopServices PlatformSupport)
set(SORVANE_EDGES_DesktopLinux    DesktopServices PlatformSupport)
set(SORVANE_EDGES_SorvaneText     Regex PlatformSupport)
set(SORVANE_EDGES_SorvaneCleanup  SorvaneText Regex PlatformSupport)
set(SORVANE_EDGES_SorvaneCapture  AudioIO DesktopServices PlatformSupport)
set(SORVANE_EDGES_SorvaneInsertion SorvaneText Regex DesktopServices PlatformSupport)
set(SORVANE_EDGES_SorvaneHistory  SorvaneText Regex PlatformSupport)
set(SORVANE_EDGES_SorvanePreparation Ostrel ModelCatalog ModelStore SorvaneCleanup PlatformSupport)
set(SORVANE_EDGES_SorvaneSession  SorvaneCapture SorvaneCleanup SorvaneHistory SorvaneInsertion SorvanePreparation
                                  SorvaneText Ostrel DesktopServices Regex PlatformSupport)
set(SORVANE_EDGES_SorvaneApp      SorvaneWindows SorvaneViewModels SorvanePreparation SorvaneCleanup SorvaneSession SorvaneText
                                  DesktopLinux Ostrel ModelCatalog ModelStore MLProgram AudioIO PlatformSupport)
set(SORVANE_EDGES_SorvaneSurfaces  SorvaneSession PlatformSupport)
set(SORVANE_EDGES_SorvaneViewModels SorvaneSurfaces SorvaneSession PlatformSupport)
set(SORVANE_EDGES_SorvaneWindows   SorvaneViewModels SorvaneSurfaces PlatformSupport)

# Which module owns which third-party library; nobody else may include it.
set(SORVANE_LIBRARIES_PlatformSupport Boost CURL Json)
set(SORVANE_LIBRARIES_AudioIO         FFmpeg)
set(SORVANE_LIBRARIES_DesktopLinux    Pulse SdbusCpp Xcb)
set(SORVANE_LIBRARIES_MLProgram       Boost Json)
set(SORVANE_LIBRARIES_ModelStore      Json OpenSSL)
set(SORVANE_LIBRARIES_ModelCatalog    Boost)
set(SORVANE_LIBRARIES_Ostrel          Boost Json ICU)
set(SORVANE_LIBRARIES_Regex           ICU)
set(SORVANE_LIBRARIES_SorvaneText     LinkGrammar)
set(SORVANE_LIBRARIES_SorvaneCleanup  Json)
set(SORVANE_LIBRARIES_SorvaneHistory  Boost Json ICU Plist)
set(SORVANE_LIBRARIES_SorvaneViewModels Qt)
set(SORVANE_LIBRARIES_SorvaneWindows   Qt)
set(SORVANE_LIBRARIES_SorvaneApp      Boost Json Qt)
