#include <iostream>

#include <Corvane/Corvane.hpp>

struct Team {
    std::string name;
};

struct Table {
    Team leader;
};

int main(int argc, char** argv) {
    using namespace corvane;
    const auto api = std::make_shared<CommonAPI<Table>>(std::make_shared<URLSessionAPIRemote>(nullptr, 30, "readme"));
    api->update(URL::parse(argc > 1 ? argv[1] : "http://localhost/table"));
    runBlocking([repository = APIRepository(api, 3600, 60)]() -> Task<> {
        const auto answer = co_await repository.fetchData(true);
        std::cout << (answer ? answer->model->leader.name : answer.error().errorDescription()) << '\n';
    });
}
