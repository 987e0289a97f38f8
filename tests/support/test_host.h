// A window's face for tests: records what a feature says and answers as told.
#pragma once

#include "ui/host.h"

#include <functional>
#include <string>
#include <vector>

class TestHost final : public ui::Host {
public:
    HWND window() const override { return owner; }
    void set_status(std::wstring_view text) override { statuses.emplace_back(text); }
    std::wstring status_text() const override { return statuses.empty() ? std::wstring() : statuses.back(); }
    ui::Answer confirm(std::wstring_view text, std::wstring_view title, UINT icon) override {
        questions.push_back({std::wstring(text), std::wstring(title), icon});
        if (on_question) on_question();
        return answer;
    }
    std::optional<std::wstring> input(std::wstring_view prompt, std::wstring_view title) override {
        questions.push_back({std::wstring(prompt), std::wstring(title), 0});
        return typed;
    }
    bool pump() override {
        ++pumps;
        if (on_pump) on_pump();
        return !closing;
    }
    void hourglass(bool shown) override { pointer_shows_hourglass = shown; }

    struct Question {
        std::wstring text;
        std::wstring title;
        UINT icon;
    };

    HWND owner = nullptr;
    std::vector<std::wstring> statuses;
    std::vector<Question> questions;
    ui::Answer answer = ui::Answer::Ok;
    std::optional<std::wstring> typed;
    int pumps = 0;
    bool closing = false;
    bool pointer_shows_hourglass = false;
    std::function<void()> on_pump;
    std::function<void()> on_question;
};
