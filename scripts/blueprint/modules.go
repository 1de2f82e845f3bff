// SPDX-License-Identifier: Apache-2.0

// Lists the modules of Blueprint files, one line for each source: module, tab, source.
package main

import (
	"fmt"
	"os"

	"github.com/google/blueprint/parser"
)

func main() {
	for _, path := range os.Args[1:] {
		if err := list(path); err != nil {
			fmt.Fprintln(os.Stderr, err)
			os.Exit(1)
		}
	}
}

func list(path string) error {
	stream, err := os.Open(path)
	if err != nil {
		return err
	}
	defer stream.Close()
	file, errs := parser.ParseAndEval(path, stream, parser.NewScope(nil))
	if len(errs) > 0 {
		return errs[0]
	}
	for _, definition := range file.Defs {
		if module, ok := definition.(*parser.Module); ok {
			listSources(module)
		}
	}
	return nil
}

func listSources(module *parser.Module) {
	name := text(module, "name")
	sources, ok := module.GetProperty("srcs")
	if !ok {
		return
	}
	for _, value := range sources.Value.Eval().(*parser.List).Values {
		fmt.Printf("%s\t%s\n", name, value.Eval().(*parser.String).Value)
	}
}

func text(module *parser.Module, property string) string {
	if found, ok := module.GetProperty(property); ok {
		return found.Value.Eval().(*parser.String).Value
	}
	return ""
}
