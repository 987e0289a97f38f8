#include "services/service_advice.h"

#include "win/system_text.h"

#include "win/platform.h"

#include <doctest/doctest.h>

#include <cstdint>
#include <string>

using services::LookupServiceAdvice;

TEST_CASE("every key of the table is found, whatever its case") {
    std::uint32_t checksum = 2166136261;  // FNV-1a over the whole table: no character of it may change unnoticed
    const auto add = [&](std::wstring_view text) {
        for (const wchar_t unit : text)
            checksum = (checksum ^ unit) * 16777619;
        checksum = checksum * 16777619;
    };
    CHECK(services::AdviceTable().size() == 63);
    for (const auto& [name, advice] : services::AdviceTable()) {
        CHECK(win::LowerCase(name) == name);
        std::wstring upper(name);
        CharUpperW(upper.data());
        CHECK(LookupServiceAdvice(name) == advice);
        CHECK(LookupServiceAdvice(upper) == advice);
        add(name);
        add(advice);
    }
    CHECK(checksum == 2128887766);
}

TEST_CASE("only the exact display name counts") {
    const std::wstring_view unknown = L"判断基準：情報募集中です。作者HPにてご報告していただくと反映いたします";
    CHECK(LookupServiceAdvice(L"Windows Update") == L"判断基準：「自動」推奨");
    CHECK(LookupServiceAdvice(L"Print Spooler") == L"判断基準：プリンタ未使用なら「無効」");
    CHECK(LookupServiceAdvice(L"TPM Base Sevices") == L"判断基準：指紋認証（暗号化）等の機能を持たないPCなら「無効」");
    CHECK(LookupServiceAdvice(L"TPM Base Services") == unknown);
    CHECK(LookupServiceAdvice(L"Windows Update ") == unknown);
    CHECK(LookupServiceAdvice(L"Windows") == unknown);
    CHECK(LookupServiceAdvice(L"") == unknown);
}
