#include "npxlate/app.h"

#include <clocale>
#include <exception>

#include "io/standard.h"
#include "npxlate/command_line.h"
#include "npxlate/error.h"
#include "npxlate/output.h"

namespace tool {

int run(int argc, const char* const* argv) {
    io::prepare_standard_streams();
    // For the one question of whether the terminal takes UTF-8. A locale that there is not leaves plain ASCII.
    static_cast<void>(std::setlocale(LC_CTYPE, ""));
    try {
        run_command_line(argc, argv);
        return 0;
    } catch (const io::NobodyReads& failure) {
        return failure.exit_status;
    } catch (const RecordsDiffer& difference) {
        return difference.exit_status;
    } catch (const Failure& failure) {
        report(failure.what());
        return failure.exit_status;
    } catch (const std::exception& error) {
        report(error.what());
        return 2;
    }
}

}  // namespace tool
