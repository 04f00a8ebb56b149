// Placeholder translation unit so that the library builds before its classes exist.
namespace HotKey {
}
