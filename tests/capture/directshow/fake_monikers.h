// A list of devices without a system behind it, for what the system's own list never does.
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <objidl.h>

#include <map>
#include <string>
#include <vector>

namespace orvane::test {

/// Counts its references and is deleted by its maker.
template <typename Interface>
class Fake : public Interface {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    ULONG references = 0;
};

class FakeBag final : public Fake<IPropertyBag> {
public:
    HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
        reads.emplace_back(name);
        const auto found = texts.find(name);
        if (found == texts.end()) return E_INVALIDARG;
        if (numbers) {
            value->vt = VT_I4;
            value->lVal = 1;
            return S_OK;
        }
        value->vt = VT_BSTR;
        value->bstrVal = SysAllocString(found->second.c_str());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Write(LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }

    std::map<std::wstring, std::wstring> texts;
    std::vector<std::wstring> reads;
    bool numbers = false; // gives numbers in place of texts
};

class FakeMoniker final : public Fake<IMoniker> {
public:
    HRESULT STDMETHODCALLTYPE BindToStorage(IBindCtx*, IMoniker*, REFIID, void** object) override {
        *object = nullptr;
        if (!bindable) return E_FAIL;
        bag.AddRef();
        *object = static_cast<IPropertyBag*>(&bag);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsDirty() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Load(IStream*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Save(IStream*, WINBOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BindToObject(IBindCtx*, IMoniker*, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reduce(IBindCtx*, DWORD, IMoniker**, IMoniker**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ComposeWith(IMoniker*, WINBOOL, IMoniker**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Enum(WINBOOL, IEnumMoniker**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsEqual(IMoniker*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Hash(DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsRunning(IBindCtx*, IMoniker*, IMoniker*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTimeOfLastChange(IBindCtx*, IMoniker*, FILETIME*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Inverse(IMoniker**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CommonPrefixWith(IMoniker*, IMoniker**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RelativePathTo(IMoniker*, IMoniker**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDisplayName(IBindCtx*, IMoniker*, LPOLESTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx*, IMoniker*, LPOLESTR, ULONG*, IMoniker**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE IsSystemMoniker(DWORD*) override { return E_NOTIMPL; }

    FakeBag bag;
    bool bindable = true;
};

class FakeMonikers final : public Fake<IEnumMoniker> {
public:
    explicit FakeMonikers(std::vector<FakeMoniker*> monikers) : monikers_(std::move(monikers)) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, IMoniker** monikers, ULONG* fetched) override {
        if (count != 1 || next_ == monikers_.size()) return S_FALSE;
        monikers_[next_]->AddRef();
        *monikers = monikers_[next_++];
        if (fetched != nullptr) *fetched = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumMoniker**) override { return E_NOTIMPL; }

private:
    std::vector<FakeMoniker*> monikers_;
    std::size_t next_ = 0;
};

} // namespace orvane::test
