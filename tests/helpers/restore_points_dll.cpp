// Stands in for the provider of restore points, for a whole program: a machine that has some. To be registered as the
// in-process server of the class "winmgmts".
#include "support/automation_double.h"

#include <memory>

namespace {

struct Machine {
    Machine() {
        for (const auto& [time, description] :
             {std::pair(L"20261102113205.000000-000", L"家計簿プラス をインストールしました"),
              {L"20261109020013.000000-000", L"システム チェックポイント"},
              {L"20261114121559.000000-000", L"Windows Update"},
              {L"20261119084120.000000-000", L"プリンタのドライバを入れる前"}}) {
            const auto point = doubles::MakeObject(
                {{L"creationtime", win::Variant(time)}, {L"Description", win::Variant(description)}});
            provider.points.emplace_back(point.get());
        }
    }
    Provider provider;
};

}  // namespace

extern "C" __declspec(dllexport) HRESULT WINAPI DllGetClassObject(REFCLSID id, REFIID wanted, void** object) {
    // Lives as long as the program. From now on the class is registered in the program itself.
    [[maybe_unused]] static const Machine* const machine = std::make_unique<Machine>().release();
    return CoGetClassObject(id, CLSCTX_INPROC_SERVER, nullptr, wanted, object);
}

extern "C" __declspec(dllexport) HRESULT WINAPI DllCanUnloadNow() { return S_FALSE; }
