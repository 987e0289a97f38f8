// The one owner of "something is running". Fills, clean-ups and waits process messages, so any command can arrive in
// the middle of another: this object decides what runs now, what waits and what is refused.
#pragma once

namespace shell {

class Activity {
public:
    // What can be asked for at any time. While work runs it is remembered, one of each kind, and starts when the work
    // has returned: no list ever holds rows of two fills.
    struct Request {
        enum Kind {
            TabClick,  // show and fill the selected tab
            Refresh,   // what the File menu's refresh does on the shown tab
            Fill,      // fill the list of `page` again, shown or not
        };
        Kind kind;
        int page = 0;  // below kPages
    };
    static constexpr int kPages = 8;

    class Runner {
    public:
        // Carries out one request; never called while another call has not returned.
        virtual void run(Request request) = 0;
        // Everything has ended and nothing waits: what arrived meanwhile can be shown.
        virtual void settled() = 0;
        virtual void close() = 0;

    protected:
        ~Runner() = default;
    };

    explicit Activity(Runner& runner) : runner_(runner) {}

    void request(Request request);

    // A fill of `page` begins: one that was asked for before is thereby done.
    void fill_begins(int page) { fill_waits_[page] = false; }

    // Closing is refused while an uninstaller runs, waits while other work runs, and happens at once otherwise.
    // False when it was refused.
    bool request_close();

    bool running() const { return running_; }
    bool close_blocked() const { return close_blocks_ > 0; }
    bool close_waits() const { return close_waits_; }

    // A command that must not meet another: a clean-up, a question, the creation of a restore point. Not entered
    // while something runs: then the command is refused.
    class Exclusive {
    public:
        explicit Exclusive(Activity& activity);
        Exclusive(const Exclusive&) = delete;
        Exclusive& operator=(const Exclusive&) = delete;
        ~Exclusive();
        explicit operator bool() const { return entered_; }

    private:
        Activity& activity_;
        bool entered_;
    };

    // For the length of a scope the window refuses to close, but stays usable.
    class CloseBlock {
    public:
        explicit CloseBlock(Activity& activity) : activity_(activity) { ++activity_.close_blocks_; }
        CloseBlock(const CloseBlock&) = delete;
        CloseBlock& operator=(const CloseBlock&) = delete;
        ~CloseBlock() { --activity_.close_blocks_; }

    private:
        Activity& activity_;
    };

private:
    void run_waiting();
    bool take_next(Request& next);

    Runner& runner_;
    bool running_ = false;
    int close_blocks_ = 0;
    bool tab_click_waits_ = false;
    bool refresh_waits_ = false;
    bool fill_waits_[kPages] = {};
    bool close_waits_ = false;
};

}  // namespace shell
