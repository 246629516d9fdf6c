namespace kestms {}
