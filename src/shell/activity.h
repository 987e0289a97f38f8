// The one owner of "something is running". Fills, clean-ups and waits process messages, so any command can arrive in
// the middle of another: this object decides what runs now, what waits and what is refused.
#pragma once

namespace shell {

class Activity {
public:
    // What can be asked for at any time. While work runs it is remembered and starts when the work has returned:
    // no list ever holds rows of two fills.
    enum class Request {
        TabClick,   // show and fill the selected tab
        Refresh,    // what the File menu's refresh does on the shown tab
        Rescan,     // scan the installed programs and updates again, shown or not
        Startup,    // fill the startup list again, shown or not
        Catalogue,  // fill the Control Panel list, shown or not
    };
    static constexpr int kRequests = 5;

    class Runner {
    public:
        // Carries out one request; never called while another call has not returned.
        virtual void run(Request request) = 0;
        virtual void close() = 0;

    protected:
        ~Runner() = default;
    };

    explicit Activity(Runner& runner) : runner_(runner) {}

    void request(Request request);

    // Closing is refused while an uninstaller runs, waits while other work runs, and happens at once otherwise.
    // False when it was refused.
    bool request_close();

    bool running() const { return running_; }
    bool busy() const { return busy_ > 0; }
    bool close_waits() const { return close_waits_; }

    // A command that must not meet another: a clean-up, a question, the creation of a restore point. Not entered
    // while something runs: then the command is refused.
    class Command {
    public:
        explicit Command(Activity& activity);
        Command(const Command&) = delete;
        Command& operator=(const Command&) = delete;
        ~Command();
        explicit operator bool() const { return entered_; }

    private:
        Activity& activity_;
        bool entered_;
    };

    // The busy flag for the length of a scope: the window refuses to close, but stays usable.
    class Busy {
    public:
        explicit Busy(Activity& activity) : activity_(activity) { ++activity_.busy_; }
        Busy(const Busy&) = delete;
        Busy& operator=(const Busy&) = delete;
        ~Busy() { --activity_.busy_; }

    private:
        Activity& activity_;
    };

private:
    void run_waiting();

    Runner& runner_;
    bool running_ = false;
    int busy_ = 0;
    bool waits_[kRequests] = {};  // one of each kind: the last one stands for all
    bool close_waits_ = false;
};

}  // namespace shell
