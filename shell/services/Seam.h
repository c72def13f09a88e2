#pragma once

namespace td {

// A platform service that tests may replace: the installed stand-in, else the production one.
template <typename Interface, typename Production>
class Seam {
public:
    static Interface& get()
    {
        if (installed())
            return *installed();
        static Production production;
        return production;
    }
    // nullptr brings the production service back. The caller keeps ownership.
    static void install(Interface* seam) { installed() = seam; }

private:
    static Interface*& installed()
    {
        static Interface* seam = nullptr;
        return seam;
    }
};

}  // namespace td
