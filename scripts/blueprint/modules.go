// SPDX-License-Identifier: Apache-2.0

// Prints the modules of Blueprint files as JSON, with all variables and operators evaluated.
package main

import (
	"encoding/json"
	"fmt"
	"os"

	"github.com/google/blueprint/parser"
)

type module struct {
	Type       string      `json:"type"`
	Properties interface{} `json:"properties"`
}

func main() {
	modules := []module{}
	for _, path := range os.Args[1:] {
		found, err := modulesOf(path)
		if err != nil {
			fmt.Fprintln(os.Stderr, err)
			os.Exit(1)
		}
		modules = append(modules, found...)
	}
	if err := json.NewEncoder(os.Stdout).Encode(modules); err != nil {
		fmt.Fprintln(os.Stderr, err)
		os.Exit(1)
	}
}

func modulesOf(path string) ([]module, error) {
	stream, err := os.Open(path)
	if err != nil {
		return nil, err
	}
	defer stream.Close()
	file, errs := parser.ParseAndEval(path, stream, parser.NewScope(nil))
	if len(errs) > 0 {
		return nil, errs[0]
	}
	var modules []module
	for _, definition := range file.Defs {
		if found, ok := definition.(*parser.Module); ok {
			modules = append(modules, module{found.Type, plain(&found.Map)})
		}
	}
	return modules, nil
}

func plain(expression parser.Expression) interface{} {
	switch value := expression.Eval().(type) {
	case *parser.Map:
		properties := map[string]interface{}{}
		for _, property := range value.Properties {
			properties[property.Name] = plain(property.Value)
		}
		return properties
	case *parser.List:
		elements := []interface{}{}
		for _, element := range value.Values {
			elements = append(elements, plain(element))
		}
		return elements
	case *parser.String:
		return value.Value
	case *parser.Bool:
		return value.Value
	case *parser.Int64:
		return value.Value
	}
	panic(fmt.Sprintf("%s has no value", expression))
}
