# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
#
# Each library under one name, ThirdParty::<Name>; who may use it stands in ModuleGraph.cmake.
find_package(PkgConfig REQUIRED)
find_package(Boost 1.81 REQUIRED)
find_package(nlohmann_json 3.11 REQUIRED)
find_package(CURL 7.88 REQUIRED)
find_package(OpenSSL 3.0 REQUIRED COMPONENTS Crypto)
find_package(ICU 72 REQUIRED COMPONENTS i18n uc)
find_package(GTest REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Quick Test Widgets)
pkg_check_modules(FFmpeg REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil libswresample)
pkg_check_modules(LinkGrammar REQUIRED IMPORTED_TARGET link-grammar)
pkg_check_modules(Plist REQUIRED IMPORTED_TARGET libplist-2.0)
pkg_check_modules(Pulse REQUIRED IMPORTED_TARGET libpulse)
pkg_check_modules(SdbusCpp REQUIRED IMPORTED_TARGET sdbus-c++)
pkg_check_modules(Xcb REQUIRED IMPORTED_TARGET xcb xcb-res xcb-xfixes xcb-xkb xcb-xtest)

function(sorvane_third_party name)
    add_library(ThirdParty::${name} INTERFACE IMPORTED GLOBAL)
    target_link_libraries(ThirdParty::${name} INTERFACE ${ARGN})
endfunction()

sorvane_third_party(Boost   Boost::headers)
sorvane_third_party(CURL    CURL::libcurl)
sorvane_third_party(Json    nlohmann_json::nlohmann_json)
sorvane_third_party(OpenSSL OpenSSL::Crypto)
sorvane_third_party(ICU     ICU::i18n ICU::uc)
sorvane_third_party(FFmpeg  PkgConfig::FFmpeg)
sorvane_third_party(LinkGrammar PkgConfig::LinkGrammar)
sorvane_third_party(Plist   PkgConfig::Plist)
sorvane_third_party(Pulse   PkgConfig::Pulse)
sorvane_third_party(SdbusCpp PkgConfig::SdbusCpp)
sorvane_third_party(Xcb     PkgConfig::Xcb)
sorvane_third_party(Qt      Qt6::Gui Qt6::Quick Qt6::Widgets)

# The thread sanitizer does not understand fences; without these the library orders its memory by its locks and
# atomics alone.
if(SORVANE_SANITIZE MATCHES thread)
    target_compile_definitions(ThirdParty::Boost INTERFACE BOOST_ASIO_DISABLE_STD_ATOMIC BOOST_ASIO_DISABLE_FENCED_BLOCK)
endif()
