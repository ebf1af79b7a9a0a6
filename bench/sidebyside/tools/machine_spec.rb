# An example a device: RULES=rules.json MACHINE=machine.json rspec machine_spec.rb
require 'json'
require 'serverspec'

set :backend, :exec

rules = JSON.parse(File.read(ENV.fetch('RULES')))
machine = file(ENV.fetch('MACHINE')).content_as_json

rules.each do |locator, rule|
  describe locator do
    it 'is as ordered' do
      device = machine.fetch(locator)
      expect(device['type']).to eq rule['type']
      rule['patterns'].each { |key, pattern| expect(device[key]).to match(/\A#{pattern}\z/) }
      rule['ranges'].each { |key, (low, high)| expect(device[key]).to be_between(low, high) }
    end
  end
end
