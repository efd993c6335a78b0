# The development key pair's public half (X then Y, 128 hexadecimal digits). Its private half lies openly in
# examples/ConfigServer and protects nothing: a product sets a key of its own.
set(velmorcore_development_key "12f601b218c17e9136eee3632e10fc293a99e5c2a0e8ebcee3502b469b083adc62e2c36a05b7558b58af926ecf75e61c1339a03ddd37743ebc90f54d8b8a6488")
set(VELMORCORE_SERVER_PUBLIC_KEY "${velmorcore_development_key}" CACHE STRING
    "Server public key on secp256k1, X then Y, 128 hexadecimal digits")
set(VELMORCORE_DEFAULT_SERVER_URL "https://config.velmor.example" CACHE STRING
    "Address of the kit's default server")

string(LENGTH "${VELMORCORE_SERVER_PUBLIC_KEY}" velmorcore_key_length)
if(NOT velmorcore_key_length EQUAL 128 OR NOT VELMORCORE_SERVER_PUBLIC_KEY MATCHES "^[0-9A-Fa-f]+$")
    message(FATAL_ERROR "VELMORCORE_SERVER_PUBLIC_KEY must be 128 hexadecimal digits (X then Y)")
endif()

# An agreement with a point off the curve, or with one whose private key anybody guesses, protects nothing.
if(NOT VELMORCORE_SERVER_PUBLIC_KEY STREQUAL velmorcore_sound_key)
    set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
    try_compile(velmorcore_key_is_sound "${CMAKE_CURRENT_BINARY_DIR}/server-key"
        "${CMAKE_CURRENT_LIST_DIR}/ServerKeyCheck.cpp"
        COMPILE_DEFINITIONS "-DVELMORCORE_SERVER_PUBLIC_KEY=\"${VELMORCORE_SERVER_PUBLIC_KEY}\""
        CXX_STANDARD 17 CXX_STANDARD_REQUIRED ON OUTPUT_VARIABLE velmorcore_key_findings)
    unset(CMAKE_TRY_COMPILE_TARGET_TYPE)
    if(NOT velmorcore_key_is_sound)
        message(FATAL_ERROR "VELMORCORE_SERVER_PUBLIC_KEY is no point of secp256k1 that protects anything:\n"
            "${velmorcore_key_findings}")
    endif()
    set(velmorcore_sound_key "${VELMORCORE_SERVER_PUBLIC_KEY}" CACHE INTERNAL "The server key that was checked last")
endif()

string(TOLOWER "${VELMORCORE_SERVER_PUBLIC_KEY}" velmorcore_lower_key)
string(TOUPPER "${CMAKE_BUILD_TYPE}" velmorcore_build_type)
if(velmorcore_lower_key STREQUAL velmorcore_development_key AND NOT velmorcore_build_type STREQUAL "DEBUG")
    message(WARNING "This build keeps the development server key, whose private half is public. "
        "Set VELMORCORE_SERVER_PUBLIC_KEY.")
endif()
